#include "format/MessageSink.h"

#include <string>
#include <utility>

namespace halCore::ZEL {

void MessageSink::error(std::size_t line, std::initializer_list<std::string_view> parts) const {
    if (report_ == nullptr && !halNotify::isNotifyEnabled(halNotify::Error)) return;
    std::string text;
    // A line may be as long as the file.
    constexpr std::size_t kMostOfAPart = 10'000;
    for (const std::string_view part : parts) {
        text += part.substr(0, kMostOfAPart);
        if (part.size() > kMostOfAPart)
            text.append("... (").append(std::to_string(part.size() - kMostOfAPart)).append(" bytes more)");
    }
    if (report_ != nullptr)
        report_->tell({line, halNotify::Error, std::move(text)});
    else
        halNotify::notify(halNotify::Error) << "ZEL error: " << text << ", line: " << line;
}

void MessageSink::warning(std::size_t line, std::string_view text) const {
    if (report_ != nullptr)
        report_->tell({line, halNotify::Warning, std::string(text)});
    else if (halNotify::isNotifyEnabled(halNotify::Warning))
        halNotify::notify(halNotify::Warning) << text;
}

void MessageSink::advice(std::size_t line, std::string_view text) const {
    if (text.empty()) return;
    if (report_ != nullptr)
        report_->tell({line, halNotify::Warning, std::string(text)});
    else if (halNotify::isNotifyEnabled(halNotify::Warning))
        halNotify::notify(halNotify::Warning) << "ZEL warning: " << text << ", line: " << line;
}

}  // namespace halCore::ZEL
