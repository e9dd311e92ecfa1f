// The selection between runs: ~/.capstanlight_prefs.json, a JSON object whose values are all strings.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace halyard {

using PreferenceValues = std::map<std::string, std::string>;

/// The file's place, with the home folder as it is at the first call.
const std::string& preferencesPath();

/// Fills the context and the language, and enters the saved working directory where it is one. Silent on any failure.
void loadPreferences();
/// Writes the whole file. Called right after each change of a saved value.
void savePreferences();

/// The document as a map; nothing where it isn't an object of strings.
std::optional<PreferenceValues> readPreferences(std::string_view json);
/// Takes the values over into the context, each by its own rule.
void applyPreferences(const PreferenceValues& values);
/// What the context holds, as it is saved.
PreferenceValues collectPreferences();

}  // namespace halyard
