#pragma once

namespace zelvora {

// What the library says to the user when a task or the backend brings no words of its own.

inline constexpr char kNavigatingSay[] = "Navigating to: ";  ///< Before a task's title.
inline constexpr char kPickOneSay[] = "I'm not sure what you meant. Here are a few options:";
inline constexpr char kNothingMatchedSay[] = "No matching screen found. Try rephrasing 🙂";
inline constexpr char kNothingSaidSay[] = "Type or say something 🙂";
inline constexpr char kDoneSay[] = "OK";

}  // namespace zelvora
