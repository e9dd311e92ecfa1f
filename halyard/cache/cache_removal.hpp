// The two ways in which a place is emptied. Nothing is deleted while the home folder isn't usable, and no status
// counts: whether something is left is seen by looking.
#pragma once

#include <string>
#include <string_view>

namespace halyard {

/// The path as one word of the shell that no command takes for an option or an expression.
std::string pathWord(std::string_view path);

/// Removes what a word of the shell names: quoted, or with a tilde that the shell expands. Of a symbolic link only the
/// link goes.
void removePath(std::string_view word);
/// Removes all that a folder holds, hidden files too. The folder stays; one that is a symbolic link is left alone, and
/// so is its target. The path may begin with a tilde.
void clearContents(std::string_view path);
/// Runs a deletion behind a spinner.
void runDeletion(const std::string& label, const std::string& command);

}  // namespace halyard
