#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "base/FileDescriptor.h"
#include "base/Result.h"
#include "posix/files/ItemPlace.h"

namespace vantrel {

/// A hidden folder of this process's own in a folder that it works in: nobody else may enter it, so names in
/// it mean what this process made them mean. It is locked while in use, and its name says whose it is, so
/// that what an interrupted process left can be found (see `clearLeftovers`). One thread at a time.
class Workplace {
public:
    /// `copy`: for what is being made, which is removed unless finished. `original`: for somebody's data, set
    /// aside, which is put back and never removed with the workplace.
    enum class Purpose : std::uint8_t { copy, original };

    /// What the names of such folders begin with.
    static std::string_view prefixOf(Purpose purpose);

    /// Makes one in an open folder, which is borrowed. permission_denied when its name leads to something
    /// other than what was made: somebody has swapped it.
    static Result<Workplace> make(int folder, Purpose purpose);

    Workplace(Workplace&& other) noexcept
        : purpose_(other.purpose_),
          place_{other.place_.folder, std::exchange(other.place_.name, {})},
          own_(std::move(other.own_)),
          reserve_(std::move(other.reserve_)) {}
    Workplace& operator=(Workplace&&) = delete;
    ~Workplace() { remove(); }

    /// The open folder.
    int number() const { return own_.number(); }

    /// Removes the folder, a copy's with all that is in it. The destructor does so too.
    void remove();

private:
    Workplace(Purpose purpose, ItemReference place) : purpose_(purpose), place_(std::move(place)) {}

    [[nodiscard]] std::error_code open();

    Purpose purpose_;
    ItemReference place_;  ///< without a name when there is nothing to take away
    FileDescriptor own_;
    /// Removing has to list the folder, which takes one descriptor more; by then there may be none left.
    FileDescriptor reserve_;
};

}  // namespace vantrel
