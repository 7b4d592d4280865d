#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "velmora/shell/session/phase_log.h"

using namespace velmora;
using lumo::StatusSection;

namespace {

/// What a computation leaves in the event log, without times.
template <typename Computation>
std::vector<std::string> phases_of(const Computation& compute) {
    lumo::NullStatusNode display;
    EventLog events;
    PhaseLog phases(display, events);
    compute(phases);
    std::vector<std::string> names;
    for (const std::string& line : events.lines()) {
        // "     0.002  Large Division: 0.001 seconds"
        const auto from = line.find("  ", line.find_first_not_of(' ')) + 2, to = line.rfind(": ");
        const bool timed = line.ends_with(" seconds") && from < to && to < line.size();
        names.push_back(timed ? line.substr(from, to - from) : "no time: " + line);
    }
    return names;
}

}  // namespace

TEST(PhaseLog, StepsAtTheBottomWithoutWhatRunsInside) {
    const auto names = phases_of([](lumo::StatusNode& status) {
        { const StatusSection title(status, {{'G', "Pi - Somebody (1999):"}}); }
        {
            const StatusSection series(status, {{'G', "Series A...  "}, {'Y', "12"}, {'w', " terms  "}});
            const StatusSection block(status, {{'w', "Summing: "}});
            const StatusSection inner(status, {{'G', "Large Division...  "}});
        }
        { const StatusSection product(status, {{'G', "Finalizing: Q * (R + S): "}}); }
    });
    EXPECT_EQ(names, (std::vector<std::string>{"Series A", "Finalizing: Q * (R + S)"}));
}

TEST(PhaseLog, PartsOfAFormulaWithTheirSteps) {
    const auto names = phases_of([](lumo::StatusNode& status) {
        { const StatusSection title(status, {{'G', "    18 ArcCoth( 26 )"}}); }
        for (const char* term : {"18 ArcCoth( 26 )", "-2 ArcCoth( 4801 )"}) {
            const StatusSection section(status, {{'Y', term}, {'w', "  "}});
            {
                const StatusSection series(status, {{'G', "Series A...  "}});
                const StatusSection block(status, {{'w', "Summing: "}});
            }
            const StatusSection division(status, {{'G', "Large Division...  "}});
        }
        const StatusSection mean(status, {{'G', "AGM(1,x)"}});
        const StatusSection round(status, {{'w', "AGM: 1 (16)"}});
    });
    EXPECT_EQ(names, (std::vector<std::string>{
                         "18 ArcCoth( 26 ): Series A", "18 ArcCoth( 26 ): Large Division", "18 ArcCoth( 26 )",
                         "-2 ArcCoth( 4801 ): Series A", "-2 ArcCoth( 4801 ): Large Division",
                         "-2 ArcCoth( 4801 )", "AGM(1,x)"}));
}
