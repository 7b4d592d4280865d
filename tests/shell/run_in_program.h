/// One computation in this process, from the arguments of the program to its exit code.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "console_talk.h"
#include "plain_console.h"
#include "temp_folder.h"
#include "velmora/shell/entry/program.h"
#include "velmora/shell/session/run_in_memory.h"

namespace velmora {

struct RunInProgram {
    /// tds 0 leaves the task decomposition as it is.
    RunInProgram(std::unique_ptr<Constant> constant, upL_t dec, upL_t tds, OutputProbe* probe) {
        const lumo::TempFolder folder;
        const PlainConsole restored;
        text = lumo::printed_by([&] {
            code = run_program({"velmora", "colors:0", "priority:0", "pause:-2"}, [&](Program& program) {
                NormalFloatSessionB session(program.hardware, std::move(constant));
                session.set_decimal_digits(dec);
                session.set_output_path(folder.path.string());
                if (tds != 0) session.set_task_decomposition(tds);
                run_in_memory(session, probe);
                return 0;
            });
        });
        for (const auto& entry : std::filesystem::directory_iterator(folder.path)) {
            const std::string name = entry.path().filename().string();
            if (name.find("(incomplete)") == std::string::npos && name.find(" - Dec - ") != std::string::npos)
                digits += folder.contents(name);
        }
    }

    int code = -1;
    std::string text;    ///< what it printed
    std::string digits;  ///< of the decimal digit file, if it got its name
};

}  // namespace velmora
