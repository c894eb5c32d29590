#pragma once

// Files that minisign 0.11 wrote (minisign -G -W, then minisign -S -W on a
// file holding "hello\n"), so that our reader is held to the real ones.
namespace vx::engine::samples {

constexpr const char* kSignedBytes = "hello\n";
constexpr const char* kPublicKeyLine = "RWSqc0mhllp3tBKy4gGUE7J0++ZykY1ksT/fKdyXrvCgWO5Yr+jdOsn1";
constexpr const char* kPublicKey =
    "untrusted comment: minisign public key B4775A96A14973AA\n"
    "RWSqc0mhllp3tBKy4gGUE7J0++ZykY1ksT/fKdyXrvCgWO5Yr+jdOsn1\n";
constexpr const char* kSignature =
    "untrusted comment: signature from minisign secret key\n"
    "RUSqc0mhllp3tClJlmjh2JAdptP6T6BEyqd2VvrbsidAxwr6MCsijXS8Bj9rPtt5xSmgQ7TkLGdFgJVhdsmzUh6m8acP"
    "dCZfXwA=\n"
    "trusted comment: timestamp:1795550195\tfile:f.txt\thashed\n"
    "/CrHkMKoyYN2NzvRiWehzGRKS26hHLFd8yxHoCUVTr7Gw9QqjAlRqSDVZ6P8G9TLAs5rS65FOAXJX7pYeAXQBw==\n";

}  // namespace vx::engine::samples
