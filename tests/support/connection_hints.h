#pragma once

namespace velmoria::test {

// What a refused opening of a Connection says beside its text, for the host to look into.
constexpr const char* kPasswordHint =
    "Validate that the Database doesn't require a Password for this User because, the Password is an empty string.";
constexpr const char* kSourceHint =
    "Examine your ConnectionString, Could be a security issue, it may also have a problem finding the DSN.";

}  // namespace velmoria::test
