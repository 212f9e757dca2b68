// Texts that come from outside, made fit to be shown.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace Ombe {

/// The text so that a terminal only ever shows it: control characters become their pictures (ESC is
/// "␛"), C1 controls and characters that change the writing direction or end a line become
/// "\u009B" and the like, and bytes that are no UTF-8 become U+FFFD. Line feeds and tabs stay. The
/// result is UTF-8, and doing it again changes nothing.
std::string visibleText(std::string_view text);

/// The same for what is to stand in one line: line feeds become pictures as well. Whatever comes
/// from a file, a name, an option, the environment or a plug-in goes through here when a line for
/// people is composed of it.
std::string visibleLine(std::string_view text);

/// A character that a markup reads as its own, and how a text says it there.
struct Escape {
  char character;
  std::string_view words;
};

std::string escaped(std::string_view text, std::initializer_list<Escape> escapes);

}  // namespace Ombe
