// What became of a check, and how the process that asks says so.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "ombe_core/status.h"

namespace Ombe {

enum class Outcome : char {
  kPassed = 'p',
  kFailed = 'f',
  kNotOffered = 'n',   ///< the plug-in offers no such interface
  kNeedsSample = 's',  ///< there is no file to ask it with
};

struct Verdict {
  Outcome outcome = Outcome::kPassed;
  std::string came = {};  ///< what came instead, or why nothing was asked
  bool isHang = false;    ///< there was no end within the limit
};

/// Runs `ask` in a process of its own, which starts with one thread, no standard streams (unless
/// `isLoud` leaves it standard error) and a group of its own. One that does not end within the
/// limit is ended with its group, and has failed, as has one that crashes. Call it while this
/// process has one thread. Throws Failure when no process can be made.
Verdict judge(const std::function<void()>& ask, int limitSeconds, bool isLoud);

/// Ends the process that asks, without unwinding through a plug-in that may be broken. Any thread;
/// the first one counts.
[[noreturn]] void report(Outcome outcome, std::string_view came);

/// Where the process that asks is; stands before what came. One thread.
void setPlace(std::string place);

/// What an answer that is not as expected makes of the check from here on. One thread.
void setFailure(Outcome outcome);

/// Reports that an answer is not as expected. Any thread.
[[noreturn]] void reportFailure(std::string_view came);

inline void expect(bool holds, std::string_view came) {
  if (!holds) reportFailure(came);
}

template <typename Value>
std::string valueText(const Value& value) {
  if constexpr (std::is_same_v<Value, bool>) {
    return value ? "true" : "false";
  } else if constexpr (std::is_integral_v<Value>) {
    return std::cmp_equal(value, kGeneralFailure) ? "0x80100001" : std::to_string(value);
  } else {
    return "'" + std::string(value) + "'";
  }
}

/// `asked` names the operation, with what it was asked.
template <typename Expected, typename Came>
void expectSame(std::string_view asked, const Expected& expected, const Came& came) {
  if (came == expected) return;
  expect(false,
         std::string(asked) + " gave " + valueText(came) + " instead of " + valueText(expected));
}

}  // namespace Ombe
