#pragma once
// The effect's life on a rich composition, command by command, so that each can meet a host that fails.
#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/contract/zam_fixture.h"

namespace zam::test {

inline constexpr LayerId kWall = 2;
inline constexpr double kFailingFrame = 6;

// Says at the end how many cases there were.
class Failures : public ::testing::Test {
  protected:
    static void TearDownTestSuite() { std::printf("failures: %d cases\n", cases); }
    static inline int cases = 0;
};

// What differs from one life to another.
struct Circumstances {
    const char* name;
    bool camera = true;
    PF_SpecVersion host_version{13, 29};
    PF_Cmd setup = PF_Cmd_SEQUENCE_SETUP;
    LightType new_light = LightType::spot;
    Depth depth = Depth::bits8;
    bool handle_callbacks = true;
};

// Lights of both kinds, one of them parented and one left out by its name, and a wall for the spots to end at.
Composition rich_composition(bool camera);

// The steps of a life. From kAbout to the last query they leave it as it was.
enum Step {
    kGlobalSetup,
    kParamsSetup,
    kSequenceSetup,
    kUpdateUi,
    kPick,
    kRename,
    kAbout,
    kRender,
    kFirstQuery
};

struct Life {
    Circumstances circumstances;
    Composition comp;
    std::function<void(PF_InData&)> amend;  // what the next commands are given
    Session session;

    explicit Life(const Circumstances& which, SessionOptions options = {});
    Outcome take(int step);
    // The life so far to where `step` can be taken; every outcome must be fine.
    void live_until(int step);
    Frame render() { return session.render(kFailingFrame, {.depth = circumstances.depth}); }
};

// An exported query that asks the host. Its result is the first failing call's code, but for those that it can do
// without; or a count.
struct Answers {
    double d[14] = {};
    float f[17] = {};
    int i = 0;
    A_Matrix4 matrix{};
};
struct Query {
    const char* name;
    int (*ask)(const char*, PF_InData*, Answers&);
    std::vector<std::string> does_without{};
    bool counts = false;
};
const std::vector<Query>& queries();
inline int sequence_setdown() { return kFirstQuery + static_cast<int>(queries().size()); }
inline int global_setdown() { return sequence_setdown() + 1; }
std::string name_of_step(int step);

// The calls of the last step, each with its number among those of its name, and the suite that it asked for.
struct Call {
    std::string name;
    int nth = 0;
    std::string suite;
};
std::vector<Call> calls_of(const Session& session);

}  // namespace zam::test
