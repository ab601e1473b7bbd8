#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/Slice.h"
#include "model/Attachment.h"
#include "model/FileState.h"
#include "model/History.h"
#include "model/HostTurns.h"
#include "model/Journal.h"
#include "model/Overlay.h"
#include "model/OverlayFile.h"
#include "model/RescueFile.h"
#include "pi/Guard.h"

namespace OverlayEditor {

/// The edited overlay with its file: the rules of loading and saving, of what is kept of other people's files
/// and of shapes that nobody saved, and of what the overlay is attached to. It knows no widget. What a user
/// should know goes into the log.
class Document {
  public:
    /// \param overlay holds the shapes; it and the preferences must outlive the document
    Document(const Preferences& preferences, Overlay& overlay);
    /// Detaches the shapes, and lets the host display the overlay again.
    ~Document() {
        editing_ = false;
        guardedEnd([this] { workOff_(); });
        guardedEnd([this] { showKeptBlocks_(); });
        guardedEnd([this] { cleanupPriorZEL_(); });
    }
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    /// The file that was loaded or saved last, empty for none.
    const std::string& fileName() const { return file_.name; }
    const Attachment& attachment() const { return attachment_; }

    /// What takes long goes on in them.
    HostTurns& turns() { return turns_; }

    /// What the user has done. \see undo
    History& history() { return history_; }
    const History& history() const { return history_; }
    /// Takes the last step back, or does the next one again, with the file that was edited then.
    History::Outcome undo();
    History::Outcome redo();

    /// What a host that ended without a word has left of an overlay.
    struct Lost {
        std::unique_ptr<JournalFile> file;
        JournalContents contents;
        /// "Circle 1, Line 2"
        std::string names() const;
    };
    /// The newest that nobody has. One without any shape goes; one of which nothing can be read is set aside.
    std::optional<Lost> findLost() const;
    /// Writes it to a rescue file, and it is offered no more. \return false when that could not be written:
    /// then it stays
    bool discard(Lost& lost);
    /// Takes it as an overlay that is not saved, with the name and the platform that it had. Call rescue()
    /// first.
    void recover(Lost lost);

    /// While it is edited the shapes are drawn in place of the host's own display of the overlay. Not at
    /// first.
    void setEditing(bool editing);

    /// An overlay that is made beside the edited one, to take its place or to go.
    struct Staged {
        Staged() = default;
        Staged(const Staged&) = delete;
        Staged& operator=(const Staged&) = delete;

        Overlay overlay;
        Attachment attachment{overlay};
        ShapeStates states;
        /// How many of the shapes that were read are in it, and then how many of them the host displays.
        std::size_t next = 0;
        std::size_t displayed = 0;
        std::vector<Shape*> toDisplay;
    };
    /// What a text holds, on its way into the document.
    struct Reading {
        /// How much of the way is done, from 0 to 1.
        double part() const;
        /// Whether it is shown on a platform: the host's overlay on one of the scenario, or what has been
        /// made of it on a reference point of its own.
        bool isOn(unsigned long platformId) const;

        /// As long as the text is being read.
        std::unique_ptr<OverlayReading> text;
        LoadResult loaded;
        std::string fileName;
        /// The host's overlay that the text is of, null for none, and the platform of the scenario that it
        /// has it on.
        void* zel = nullptr;
        unsigned long platform = 0;
        /// Where offsets count from unless the text says it.
        std::unique_ptr<PointConverter> converter;
        /// Whether that is a place of the host's; without a view there is none.
        bool seesReference = false;
        /// The file that holds the text; none when it is in no file.
        FileVersion version;
        /// Whether it is but a part of a text. \see TextPart
        bool isPart = false;
        /// Whether its file holds something else.
        bool isElsewhere = false;
        /// Whether the text was made of a file of another program.
        bool isForeign = false;
        std::unique_ptr<Staged> staged;
    };
    /// Begins to read a text, and touches nothing.
    Reading begin(std::string text, const std::string& fileName, void* zel = nullptr,
                  const TextPart* part = nullptr) const;
    /// The same with a file, in place of what the host displays of it. With an error, and a message, when it
    /// cannot be read.
    Reading beginFile(const std::string& fileName) const;
    /// The same with the text that the host has of an overlay.
    Reading beginOverlay(void* zel) const;
    /// Reads on, and makes the overlay that the text is. What cannot be kept of the text is named.
    /// \return whether there is nothing left to do: then it has an error, and a message, when there is
    ///         nothing in it that can be edited, or can be taken
    bool goOn(Reading& reading, Slice& slice);
    /// What has been made is given up.
    void drop(Reading reading);

    /// Reads a whole text.
    Reading read(std::string text, const std::string& fileName, void* zel = nullptr,
                 const TextPart* part = nullptr) const {
        return readWhole_(begin(std::move(text), fileName, zel, part));
    }
    Reading readFile(const std::string& fileName) const { return readWhole_(beginFile(fileName)); }
    Reading readOverlay(void* zel) const { return readWhole_(beginOverlay(zel)); }
    /// Gives up the shapes that are held, and takes these; reads what is left to be read. Call rescue()
    /// first. What is given up goes from the host's view a slice at a time.
    /// \return false for a reading with an error: then nothing has changed
    bool take(Reading reading);

    /// Whether the shapes are in the file as they are here, and nobody else has written or deleted it.
    bool isSaved() const;
    /// The same in words, with what saving would do that is not to be seen: "None", "Not saved", "Not saved;
    /// not complete: Circle 3".
    std::string changes() const;
    /// Writes the file, and has the host show it in place of what it had loaded from it. A file with
    /// something that the editor cannot keep, or that is not as the editor last read or wrote it, is copied
    /// to its name with "~" first. Where the last shape of that very file was deleted it is copied, too, and
    /// becomes one without shapes. \return false, with a message, when it was not written: then the old file
    /// stands untouched
    bool save(const std::string& fileName);
    /// What save() writes: empty when there is nothing to write.
    std::string text() const { return overlay_.shapes().empty() ? overlay_.textWithoutShapes() : text_(); }
    enum class Rescue {
        /// Among the quick shapes, or not at all.
        OrKeep,
        /// The same; the user gives the shapes up anyway, and can take that back.
        OrGiveUp,
        /// In the directory for temporary files rather than nowhere: the shapes are lost otherwise.
        AtEnd
    };
    /// Writes shapes that changed since they were loaded or saved to a dated file, and names those that no
    /// file can hold. \return false when they could not be written and may not be given up
    bool rescue(Rescue how = Rescue::OrKeep);
    /// The file of the last rescue, empty when there was none.
    const std::string& rescueFile() const { return rescueFile_; }
    /// Gives up shapes, file and attachment. Call rescue() first.
    void clear();

    /// \see Attachment::attach
    bool attach(unsigned long platform, bool center);
    bool followPlatform() { return attachment_.followPlatform(); }
    /// A platform of the scenario is gone. \return whether the shapes were attached to it: they stay where
    /// they are
    bool platformRemoved(unsigned long id);
    /// The host has unloaded an overlay: the shapes stay.
    void overlayRemoved(void* zel);

  private:
    Reading readWhole_(Reading reading) const;
    /// Reads the text. \return whether it is read
    bool readOn_(Reading& reading, Slice& slice) const;
    /// Makes the overlay. \return whether it is made
    bool stage_(Reading& reading, Slice& slice);
    /// Nothing waits any more. \see Overlay::setLater
    void workOff_();
    /// Lets go of the host's overlay that was edited: the host displays it again.
    void cleanupPriorZEL_();
    void showPriorZEL_();
    /// With what the overlay knows of it.
    FileState fileState_() const;
    void takeFile_(FileState file);
    bool rescue_(Unrescued otherwise);
    /// Writes what an overlay holds to a rescue file.
    /// \param platform the name of the one of the scenario that it is attached to
    bool rescue_(const Overlay& overlay, const std::optional<std::string>& platform, Unrescued otherwise);
    /// Shapes come to an overlay as a journal has them.
    /// \param frame what their offsets count from \param converter null for one that is not attached
    void revive_(const JournalContents& contents, Overlay& overlay, bool active, const PointConverter& frame,
                 PointConverter* converter) const;
    JournalHead journalHead_() const;
    History::Outcome step_(History::Outcome (History::*step)(FileState&));
    /// The text is in a file.
    bool isKept_() const;
    /// In words, of one that is attached to something else than in its file.
    std::string whatAttachingChanges_() const;
    /// In words, of a file that is not as it was read or written last.
    std::string whatBecameOfFile_() const;
    /// Whether the editor itself has saved that text, of whatever overlay, as the last one in a file.
    bool isOwn_(const std::string& fileName, std::string_view text) const;
    std::string text_(std::vector<std::string>* skipped = nullptr, Overlay::Losses* lost = nullptr) const;
    /// What the overlay holds is what a file holds now.
    void keep_();
    /// The platform that the overlay is attached to. The editor's own, whose number is another one each time
    /// that it is made, have one for all.
    unsigned long base_() const;
    /// What a save puts in place of what.
    struct Replacement {
        /// What the file held, empty for no file, and what it holds from now on.
        std::string old;
        std::string text;
        /// Whether it is the file that is edited, by whatever name, and its last shape was deleted.
        bool own = false;
        bool emptied = false;
        /// Whether it lacks what the file said.
        bool lossy = false;
        /// Whether there were, and are, offsets that count from the platform on which the file is shown; told
        /// when it is shown more than once.
        bool hadOffsets = false;
        bool hasOffsets = false;
    };
    /// Copies what must not be lost of a file that is about to be replaced.
    /// \return false when the file must not be replaced, because there is no copy of it
    bool keepOldFile_(const std::string& fileName, Replacement& saving) const;
    /// Whether the overlay goes with a platform of the scenario.
    bool sails_() const {
        const unsigned long platform = overlay_.attachedPlatformId();
        return platform != 0 && !attachment_.isReferencePlatform(platform);
    }
    /// Whether it would, were its platform there.
    bool awaits_() const;
    /// Whether there are offsets whose platform is not there, and a place that stands for it: only a file
    /// that names the place has the shapes where they are.
    bool namesPlace_() const;
    /// Which of the host's displays of a file the edited overlay takes the place of, null for none.
    void* displayReplaced_(const std::vector<void*>& displays) const;
    /// Has the host show the file wherever it showed it, and the edited overlay where it is attached.
    void reload_(const Replacement& saved);
    /// Has the host draw the blocks that no shape stands for while it does not show the file itself.
    void showKeptBlocks_();
    void warnOfAssumedReference_(const std::string& fileName, const halCore::Vec3& lla) const;

    const Preferences& preferences_;
    Overlay& overlay_;
    Attachment attachment_{overlay_};
    History history_{preferences_, overlay_, attachment_};
    bool editing_ = false;
    /// What the overlay itself knows of it, see fileState_.
    FileState file_;
    /// What the editor has saved in each file last: who goes back to another overlay of that file need not
    /// look for somebody else.
    std::vector<FileVersion> written_;
    Journal journal_{history_, [this] { return journalHead_(); }};
    std::string rescueFile_;
    /// The host's overlay of the blocks that no shape stands for, null while there is none.
    void* keptBlocks_ = nullptr;
    HostTurns turns_;
};

}  // namespace OverlayEditor
