#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "pi/HostObservers.h"
#include "pi/HostStructures.h"
#include "pi/PIWindow.h"

namespace PIGUI {

/// A container whose children stand in a column. Base of everything that holds widgets.
class PICanvas : public PIWindow {
  public:
    explicit PICanvas(PICanvas* parent, std::uint32_t options = PILayoutDefault);

  protected:
    /// For derived containers, which create their own handle.
    PICanvas() = default;
};

/// Children stand side by side.
class PIHorizontalFrame : public PICanvas {
  public:
    explicit PIHorizontalFrame(PICanvas* parent, std::uint32_t options = PILayoutDefault);
};

/// Children stand in a column.
class PIVerticalFrame : public PICanvas {
  public:
    explicit PIVerticalFrame(PICanvas* parent, std::uint32_t options = PILayoutDefault);
};

/// A table filled row by row; its columns are aligned.
class PIHorizontalMatrix : public PICanvas {
  public:
    PIHorizontalMatrix(PICanvas* parent, std::int32_t columns);
};

/// A table filled column by column; its columns are aligned.
class PIVerticalMatrix : public PICanvas {
  public:
    PIVerticalMatrix(PICanvas* parent, std::int32_t rows);
};

/// A column of children with a frame and a title.
class PIGroupBox : public PICanvas {
  public:
    PIGroupBox(PICanvas* parent, const std::string& title, std::uint32_t options = PILayoutFillX);
};

/// Shows one of its children at a time.
class PISwitcher : public PICanvas {
  public:
    explicit PISwitcher(PICanvas* parent, std::uint32_t options = PILayoutDefault);
    /// Shows `child`, or the child at `index` when `child` is null.
    void setCurrent(PIWindow* child, std::int32_t index = 0);
};

class PILabel : public PIWindow {
  public:
    PILabel(PICanvas* parent, const std::string& caption);
};

/// A push button; the first check() or uncheck() makes it a toggle button. Its callback is called when it
/// is pressed, after a toggle button has changed.
class PIButton : public PIWindow {
  public:
    PIButton(PICanvas* parent, const std::string& caption, FunctorTwoParams__* callback);
    bool isChecked() const { return isChecked_(); }

  protected:
    bool checkMoves_() const override { return true; }
};

class PICheckButton : public PIWindow {
  public:
    PICheckButton(PICanvas* parent, const std::string& caption, FunctorTwoParams__* callback);
    bool isChecked() const { return isChecked_(); }
};

/// Checking one unchecks the others of the same container.
class PIRadioButton : public PIWindow {
  public:
    PIRadioButton(PICanvas* parent, const std::string& caption, FunctorTwoParams__* callback);
    bool isChecked() const { return isChecked_(); }

  protected:
    bool checkMoves_() const override { return true; }
};

/// Its callback is called when the user has changed the text and pressed Enter or left the field.
class PITextField : public PIWindow {
  public:
    PITextField(PICanvas* parent, std::int32_t style, FunctorTwoParams__* callback);
    ~PITextField() override;
    /// Makes it a line that is entered: its own callback is called when Enter is pressed, whatever the line
    /// holds, and only then; this one at each change of the user's. \return false when the host cannot
    bool setLine(FunctorTwoParams__* typing);
    /// What somebody has typed into whichever field and not handed over goes. \return whether there was any
    static bool dropTyped();
};

/// An integer with arrows: 0 to 9999, or -9999 to 9999 when signed. Its callback is called at each change.
class PISpinner : public PIWindow {
  public:
    PISpinner(PICanvas* parent, std::int32_t style, FunctorTwoParams__* callback);
    /// What it takes. Where the host knows limits a text beyond them stays, and the callback finds it as the
    /// text beside the number before.
    void setLimits(std::int32_t least, std::int32_t most);
};

/// A colour that a click changes. Its value is an integer: red in the top byte, green, blue, alpha.
class PIColorWell : public PIWindow {
  public:
    PIColorWell(PICanvas* parent, std::int32_t style, FunctorTwoParams__* callback);
};

/// One choice of several. Its integer value is the index of the chosen option.
class PIOptionMenu : public PIWindow {
  public:
    PIOptionMenu(PICanvas* parent, const std::string& caption, FunctorTwoParams__* callback);
    /// Inserts an option at `index`; an index behind the last appends it.
    void appendOption(std::int32_t index, const std::string& text);
    std::string getOptionText(std::int32_t index) const;
};

/// A list of items, each with a text (columns separated by tabs) and a pointer of the plug-in's.
class PIList : public PIWindow {
  public:
    /// \param headers column headers separated by tabs; none when empty
    PIList(PICanvas* parent, std::int32_t style, const std::string& headers = std::string());

    /// Appends an item and returns its index, or -1.
    std::int32_t appendItem(const std::string& text, void* data = nullptr);
    void appendHeader(const std::string& text);
    void removeItem(std::int32_t index);
    void clearItems();
    std::int32_t getNumItems() const;
    /// Index of the (first) selected item, -1 when none is.
    std::int32_t getSelectedItem() const;
    void setSelectedItem(std::int32_t index);
    void deselectAll();
    std::string getItemText(std::int32_t index) const;
    void setItemText(std::int32_t index, const std::string& text);
    void* getItemData(std::int32_t index) const;
    /// Called when the user double-clicks an item or presses Enter on it; null for nobody. Hosts may lack it.
    void setChosenCallback(FunctorTwoParams__* callback);

    struct Item {
        std::string text;
        void* data = nullptr;
        bool operator==(const Item&) const = default;
    };
    /// Replaces all items, unless the list was last filled with the same ones. The selected item, known by
    /// its data, stays selected.
    void setItems(std::vector<Item> items);

  private:
    /// What setItems filled the list with, nothing once it was changed otherwise.
    std::optional<std::vector<Item>> items_;
};

/// An image. The host keeps what it needs of the bytes.
class PIIcon : public PIObject {
  public:
    PIIcon() = default;
    ~PIIcon() override;
    /// \return false when the bytes are no PNG image
    bool loadPNGByArray(const unsigned char* bytes, std::size_t size);
    void* handle() const { return handle_; }

  private:
    void* handle_ = nullptr;
};

class PIMenuItem : public PIWindow {
  public:
    /// \param parent null: the host's plug-in menu
    PIMenuItem(PIWindow* parent, const std::string& caption, FunctorTwoParams__* callback);
    void setIcon(const PIIcon& icon);
};

/// A window of its own, hidden until show().
class PIDialogBox : public PICanvas {
  public:
    PIDialogBox(PIWindow* parent, const std::string& title);
    ~PIDialogBox() override;

    /// Shows the box and brings it to the front.
    void show() override;
    /// True after show() until hide() or the user's closing.
    bool shown() const override;
    void setIcon(const PIIcon& icon);
    /// One observer a box; null removes it. The observer must outlive the box or be removed.
    void registerCloseObserver(PICloseObserver* observer);
};

/// The 3-D view sends the mouse to the plug-in only, also outside of its edges, until ungrabbed. Calls nest.
void grabMouse();
void ungrabMouse();

/// The host's settings store, kept between runs.
class PIRegistry {
  public:
    static void setValue(const std::string& key, const std::string& value);
    /// Empty when unset.
    static std::string getValue(const std::string& key);
};

}  // namespace PIGUI
