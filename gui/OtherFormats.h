#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace UTILS {

/// Patterns for a file dialog of what the zel command turns into overlays: "*.geojson *.kml ...".
extern const char* const kOtherFormats;

/// Whether a file's suffix is one of those, in any case.
bool isOtherFormat(const std::string& fileName);

/// A file of another program that the zel command turns into overlay text. It ends with the object.
class OtherFormatReading {
  public:
    explicit OtherFormatReading(std::string fileName);
    ~OtherFormatReading();
    OtherFormatReading(const OtherFormatReading&) = delete;
    OtherFormatReading& operator=(const OtherFormatReading&) = delete;

    const std::string& fileName() const { return fileName_; }
    /// Waits for the command, but no longer than so. \return whether it has ended, or cannot be begun
    bool wait(std::chrono::milliseconds most);
    /// Waits until it has ended.
    /// \param text gets what it has made \param messages what it says of the file, a line each
    /// \return empty, or why there is no text; then that is not among the messages
    std::string take(std::string& text, std::vector<std::string>& messages);

  private:
    class Program;

    std::string fileName_;
    /// A directory of its own, empty for none, and the file that is made there.
    std::string directory_;
    std::string out_;
    std::unique_ptr<Program> program_;
    std::string problem_;
};

}  // namespace UTILS
