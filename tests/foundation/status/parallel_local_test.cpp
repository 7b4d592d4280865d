#include "lumo/foundation/status/parallel_local.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "death_output.h"
#include "failures.h"
#include "lumo/foundation/status/color_string.h"
#include "white_text.h"

namespace lumo {
namespace {

std::vector<std::string> lines_of(const StatusTree& tree) {
    std::vector<std::string> lines;
    for (const ColorString& row : tree) {
        lines.emplace_back();
        for (const ColorSegment& segment : row) lines.back() += segment.text;
    }
    return lines;
}

using Lines = std::vector<std::string>;

TEST(Flatten, ChildrenLineUpBehindTheirParent) {
    const StatusSnapshot tree{white("ab"),
                              {{white("cde"), {{white("1"), {}}, {white("2"), {}}}},
                               {{{'T', "f"}, {'Y', "g"}}, {{white("3"), {}}, {white("4"), {}}}}}};
    EXPECT_EQ(lines_of(flatten(tree)), (Lines{"abcde1", "     2", "  fg3", "    4"}));
    for (const StatusSnapshot& empty : {StatusSnapshot{}, StatusSnapshot{white("a"), {StatusSnapshot{}}}})
        EXPECT_EQ(message_of([&] { flatten(empty); }), "Invalid ColorString.");
}

TEST(ParallelLocal, LevelsAndChildrenMakeRows) {
    ParallelLocalNode root;
    EXPECT_TRUE(root.get_tree().empty());
    root.push_node(white("Sum"));
    root.push_node(white("0M "));
    {
        const auto a = root.make_node(), silent = root.make_node(), b = root.make_node();
        a->set_status(white("left"));
        b->push_node(white("right"));
        b->set_status(white("RIGHT"));
        EXPECT_EQ(lines_of(root.get_tree()), (Lines{"Sum 0M left", "       RIGHT"}));
    }
    root.pop_frame();
    EXPECT_EQ(lines_of(root.get_tree()), Lines{"Sum"});
    root.pop_frame();
    EXPECT_THROW(root.pop_frame(), InvalidParametersException);
}

TEST(ParallelLocal, IterationsShowDoneAndTotal) {
    ParallelLocalNode root;
    const auto loop = root.make_iteration(4000);
    loop->complete();
    loop->complete(999);
    const auto task = loop->make_node();
    task->set_status(white("merge"));
    const Lines lines = lines_of(root.get_tree());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].find("1,000 / 4,000  ( 25.0% )  "), 0u) << lines[0];
    EXPECT_NE(lines[0].find(" s  merge"), std::string::npos) << lines[0];
    EXPECT_EQ(root.get_completed(), 1000u);
    EXPECT_EQ(loop->get_completed(), 1000u);
    EXPECT_THROW(loop->pop_frame(), InvalidParametersException);
}

TEST(ParallelLocal, ThreadsUpdateWhileTheTreeIsPolled) {
    ParallelLocalNode root;
    std::atomic<bool> stop{false};
    std::thread poller([&] {
        while (!stop) root.get_tree();
    });
    {
        const auto loop = root.make_iteration(400);
        std::vector<std::thread> workers;
        for (int w = 0; w < 4; w++)
            workers.emplace_back([&] {
                for (int i = 0; i < 100; i++) {
                    const auto node = loop->make_node();
                    const StatusSection section(*node, white("a text that is too long to sit in place"));
                    node->set_status(white("b"));
                    loop->complete();
                }
            });
        for (auto& worker : workers) worker.join();
        EXPECT_EQ(root.get_completed(), 400u);
        EXPECT_EQ(lines_of(root.get_tree()).size(), 1u);
    }
    stop = true;
    poller.join();
    EXPECT_TRUE(root.get_tree().empty());
}

TEST(ParallelLocal, DestroyingANodeWithSubnodesIsFatal) {
    const auto orphan = [](auto parent) {
        return [parent] {
            const auto child = parent->make_node();
            delete parent;
        };
    };
    EXPECT_DEATH(dying(orphan(new ParallelLocalNode)),
                 "ParallelLocalNode: Attempted to destroy a node with subnodes.");
    EXPECT_DEATH(dying(orphan(new ParallelLocalIteration(3))),
                 "ParallelLocalIteration: Attempted to destroy a node with subnodes.");
}

TEST(ColorStrings, Progress) {
    const auto text = [](upL_t done, upL_t total, double seconds) {
        std::string line;
        for (const ColorSegment& segment : progress_text(done, total, seconds)) line += segment.text;
        return line;
    };
    EXPECT_EQ(text(12, 100, 0.5), "12 / 100  ( 12.0% )  0.5 s");
    EXPECT_EQ(text(25, 100, 10), "25 / 100  ( 25.0% )  30.0 s left, 10.0 s");
    EXPECT_EQ(text(250000000, 1000000000, 2.5),
              "250,000,000 / 1,000,000,000  ( 25.0% )  7.5 s left, 100 M/s, 2.5 s");
    EXPECT_EQ(text(0, 100, 10), "0 / 100  ( 0.0% )  10.0 s");
    EXPECT_EQ(text(100, 100, 10), "100 / 100  ( 100.0% )  10.0 s");
}

TEST(ColorStrings, Elapsed) {
    EXPECT_EQ(format_elapsed(0), "0.0 s");
    EXPECT_EQ(format_elapsed(59.94), "59.9 s");
    EXPECT_EQ(format_elapsed(59.99), "0:01:00");
    EXPECT_EQ(format_elapsed(3723), "1:02:03");
    EXPECT_EQ(format_elapsed(3 * 86400 + 3723), "3d 01:02:03");
}

}  // namespace
}  // namespace lumo
