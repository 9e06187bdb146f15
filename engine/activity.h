// Activity: one line of the activity history, with a random identity and the moment it was made.
#pragma once

#include "platform/instant.h"

#include <string>

namespace quorrin::Engine {

class Activity {
public:
    explicit Activity(std::string text);

    const std::string& id() const { return id_; }  // a random (version 4) UUID in canonical form
    platform::Instant date() const { return date_; }
    const std::string& text() const { return text_; }

private:
    std::string id_;
    platform::Instant date_;
    std::string text_;
};

}  // namespace quorrin::Engine
