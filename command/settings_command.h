/// `noctara settings`: shows, checks and changes a settings file. Each function returns the exit
/// code of the command, and throws BadInput, with the file as it was, if it cannot do its work.
#pragma once

#include <filesystem>
#include <ostream>
#include <string>

namespace noctara {

/// Prints each setting with its value, its default and its meaning, and what is odd.
int showSettings(const std::filesystem::path& file, std::ostream& out);

/// Prints the value of one key.
int getSetting(const std::filesystem::path& file, const std::string& key, std::ostream& out);

/// What to do if there is no settings file to change.
enum class MissingFile { refused, made };

/// Changes one key. Refuses a value that the settings page could not write.
int setSetting(const std::filesystem::path& file, const std::string& key, const std::string& text,
               MissingFile missing, std::ostream& out);

/// Prints what is odd. Returns 1 if anything is.
int checkSettingsFile(const std::filesystem::path& file, std::ostream& out);

/// Prints the identifiers of the applications to launch, one on each line.
int listApplications(const std::filesystem::path& file, std::ostream& out);

int addApplication(const std::filesystem::path& file, const std::string& identifier,
                   MissingFile missing, std::ostream& out);

/// Refuses an application for which the file has no key.
int removeApplication(const std::filesystem::path& file, const std::string& identifier,
                      std::ostream& out);

} // namespace noctara
