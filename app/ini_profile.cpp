#include "app/ini_profile.h"

#include <optional>

#include "base/file_system.h"
#include "base/text.h"
#include "base/text_file.h"
#include "base/utf8.h"

namespace tl {

namespace {

std::string_view trimSpace(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) {
        s.remove_prefix(1);
    }
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) {
        s.remove_suffix(1);
    }
    return s;
}

// The section name of a "[name]" line.
std::optional<std::string_view> sectionName(std::string_view line) {
    line = trimSpace(line);
    if (line.size() < 2 || line.front() != '[') {
        return std::nullopt;
    }
    const auto close = line.find(']');
    if (close == std::string_view::npos) {
        return std::nullopt;
    }
    return trimSpace(line.substr(1, close - 1));
}

bool isComment(std::string_view line) {
    line = trimSpace(line);
    return !line.empty() && line.front() == ';';
}

std::string_view keyOf(std::string_view line) {
    const auto eq = line.find('=');
    return trimSpace(eq == std::string_view::npos ? line : line.substr(0, eq));
}

std::string_view valueOf(std::string_view line) {
    const auto eq = line.find('=');
    if (eq == std::string_view::npos) {
        return {};
    }
    std::string_view v = trimSpace(line.substr(eq + 1));
    // A value in matching quotes is returned without them.
    if (v.size() >= 2 && (v.front() == '"' || v.front() == '\'') && v.back() == v.front()) {
        v = v.substr(1, v.size() - 2);
    }
    return v;
}

}  // namespace

IniProfile::IniProfile(FileSystem& fs, const AnsiCodePage& ansi, std::string path)
    : fs_(fs), ansi_(ansi), path_(std::move(path)) {}

void IniProfile::load() {
    lines_.clear();
    const auto data = readTextFile(fs_, path_, ansi_);
    if (!data) {
        return;
    }
    // Lines end at LF, with a CR before it dropped; a last line without one counts unless it is empty.
    const std::string_view text = *data;
    size_t at = 0;
    while (at < text.size()) {
        size_t end = text.find('\n', at);
        const size_t next = end == std::string_view::npos ? text.size() : end + 1;
        if (end == std::string_view::npos) {
            end = text.size();
        }
        std::string_view line = text.substr(at, end - at);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        lines_.emplace_back(line);
        at = next;
    }
}

std::string IniProfile::text() const {
    std::string out;
    for (const auto& l : lines_) {
        out += l;
        out += "\r\n";
    }
    return out;
}

bool IniProfile::store() {
    return replaceFileSafely(fs_, path_, text());
}

std::string IniProfile::readString(std::string_view section, std::string_view key, std::string_view defaultValue,
                                   size_t bufferSize) {
    if (!inUpdate_ && !inRead_) {
        load();
    }
    std::string value(trimSpace(defaultValue));
    bool inSection = false;
    for (const auto& line : lines_) {
        if (auto name = sectionName(line)) {
            inSection = equalsNoCase(*name, section);
            continue;
        }
        if (inSection && !isComment(line) && equalsNoCase(keyOf(line), trimSpace(key))) {
            value = std::string(valueOf(line));
            break;
        }
    }
    if (bufferSize == 0) {
        return {};
    }
    return std::string(leadingCharacters(value, bufferSize - 1));
}

int IniProfile::writeString(std::string_view section, std::string_view key, std::string_view value) {
    if (!inUpdate_) {
        load();
    }
    const std::string newLine = std::string(trimSpace(key)) + "=" + std::string(value);
    bool inSection = false;
    size_t sectionEnd = 0;  // index after the section's last non-blank line
    bool sectionFound = false;
    for (size_t i = 0; i < lines_.size(); ++i) {
        if (auto name = sectionName(lines_[i])) {
            if (inSection) {
                break;
            }
            inSection = equalsNoCase(*name, section);
            if (inSection) {
                sectionFound = true;
                sectionEnd = i + 1;
            }
            continue;
        }
        if (!inSection) {
            continue;
        }
        if (!isComment(lines_[i]) && equalsNoCase(keyOf(lines_[i]), trimSpace(key))) {
            lines_[i] = newLine;
            return inUpdate_ || store() ? 1 : 0;
        }
        if (!trimSpace(lines_[i]).empty()) {
            sectionEnd = i + 1;
        }
    }
    if (sectionFound) {
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(sectionEnd), newLine);
    } else {
        if (!lines_.empty() && !trimSpace(lines_.back()).empty()) {
            lines_.emplace_back();
        }
        lines_.push_back("[" + std::string(section) + "]");
        lines_.push_back(newLine);
    }
    return inUpdate_ || store() ? 1 : 0;
}

bool IniProfile::beginUpdate() {
    load();
    inUpdate_ = true;
    return true;
}

bool IniProfile::commitUpdate() {
    inUpdate_ = false;
    return store();
}

void IniProfile::abandonUpdate() {
    inUpdate_ = false;
    load();
}

void IniProfile::beginRead() {
    if (!inUpdate_) {
        load();
    }
    inRead_ = true;
}

void IniProfile::endRead() {
    inRead_ = false;
}

}  // namespace tl
