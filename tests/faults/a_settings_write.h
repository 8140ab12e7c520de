/// A change of the settings file that is disturbed, and what the file holds afterwards.
#pragma once

#include "input/temporary_folder.h"
#include "platform/property_list.h"
#include "tests/faults/system_calls.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace noctara {

/// One program that writes the file.
struct Writer {
    const char* name;
    std::optional<Dictionary> before; ///< What the file holds. Absent: there is none.
    std::vector<Dictionary> stages;   ///< What it holds after each write; the last is the new file.

    /// The write, below this folder. The exit code is not 0 if something was not written.
    std::function<std::function<int()>(const std::filesystem::path& root)> make;

    /// Failures are reported in one line on standard error.
    bool reports = false;
};

inline void PrintTo(const Writer& writer, std::ostream* out) {
    *out << writer.name;
}

class ASettingsWrite : public testing::TestWithParam<Writer> {
protected:
    static std::filesystem::path fileBelow(const std::filesystem::path& root);

    /// The phone's folder with the file as it was before, with the mode 0640.
    void prepare();

    TracedRun write(const std::optional<Fault>& fault = {});

    /// What the file holds, absent if there is none. The test fails if the file is not whole.
    std::optional<Dictionary> content() const;

    bool isOld(const std::optional<Dictionary>& now) const { return now == GetParam().before; }
    bool isNew(const std::optional<Dictionary>& now) const {
        return now == GetParam().stages.back();
    }

    /// The file holds what a write leaves, from the beginning to the end.
    void expectWhole(const std::string& disturbed) const;

    /// The number of hidden files beside the settings file.
    std::ptrdiff_t leftOver() const;

    const TemporaryFolder folder;
    const std::filesystem::path root = folder.path / "phone";
};

/// The calls, for messages.
std::string described(const SystemCall& call);

std::vector<Writer> writers();

} // namespace noctara
