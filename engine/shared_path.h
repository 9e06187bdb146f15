// SharedPath: an immutable path text shared by many records (every entry of a scan names its root).
#pragma once

#include <memory>
#include <string>

namespace quorrin::Engine {

class SharedPath {
public:
    SharedPath() : text_(empty()) {}
    SharedPath(std::string path) : text_(std::make_shared<const std::string>(std::move(path))) {}
    SharedPath(const char* path) : SharedPath(std::string(path)) {}

    const std::string& str() const { return *text_; }
    operator const std::string&() const { return *text_; }
    bool operator==(const SharedPath& other) const { return *text_ == *other.text_; }
    bool operator==(const std::string& other) const { return *text_ == other; }

private:
    static const std::shared_ptr<const std::string>& empty() {
        static const auto none = std::make_shared<const std::string>();
        return none;
    }
    std::shared_ptr<const std::string> text_;
};

}  // namespace quorrin::Engine
