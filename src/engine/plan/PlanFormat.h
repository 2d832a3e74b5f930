#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace sweeply {

// What the writer and the reader of plans share.

inline constexpr const char* kPlanFormatFamily = "sweeply-plan-";
inline constexpr const char* kPlanFormat = "sweeply-plan-1";
inline constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

/// "2026-11-24T05:00:00.123456789Z": a text, because many a program that changes JSON keeps only 53 bits of a number.
/// And back; nothing for another text.
[[nodiscard]] std::string exactTimeText(std::int64_t nanoseconds);
[[nodiscard]] std::optional<std::int64_t> exactTimeIn(const std::string& text);

} // namespace sweeply
