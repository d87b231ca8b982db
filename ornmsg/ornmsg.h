/// The message catalogue: the texts of the failures that users see, by number.
#pragma once

#include <string>

/// Before a declaration: the catalogue exports it.
#if defined(_WIN32)
#if defined(ORNMSG_BUILDING)
#define ORNMSG_API __declspec(dllexport)
#else
#define ORNMSG_API __declspec(dllimport)
#endif
#else
#define ORNMSG_API __attribute__((visibility("default")))
#endif

/// The text of a numbered message: a wide printf format for the arguments that its sender passes, in their order. A
/// number without a text gives "Message N".
///
///     218        the text that is no UUID (wide)
///     248        the file's name (wide)
///     249..253   the file's name (wide), the reason (narrow)
///     254        the code point as "U+XXXX" (wide), the file's name (wide)
///     271        a colour profile's description (wide)
///     278, 280   the URL (wide), the reason (wide)
///     282        a colour profile's manufacturer, model, description (wide)
ORNMSG_API std::wstring ornMsg(unsigned int number);
