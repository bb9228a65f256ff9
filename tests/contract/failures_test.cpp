// A host that fails: every call of every command, each suite withheld, and what the effect is not given. After each the
// effect must hold nothing, say what it should, and go on as if nothing had been.
#include <algorithm>
#include <memory>
#include <random>
#include <set>

#include "tests/contract/failing_life.h"

namespace zam::test {
namespace {

using Results = Fault::Results;
constexpr Fault kFaults[] = {
    {1},
    {PF_Interrupt_CANCEL, Results::rubbish, 0xFF},  // not a number, minus one
    {0, Results::null},
    {0, Results::wrong, 0x00},
    {0, Results::wrong, 0x7F},  // huge
    {0, Results::wrong, 0xFF},
};

// But for what is by design: an older host's suite is kept after a new reach light, and one that no version could be
// had of is given back all the same.
std::vector<std::string> reports_of(const Outcome& outcome, const Circumstances& in) {
    std::vector<std::string> reports = outcome.reports;
    std::erase_if(reports, [&](const std::string& report) {
        const bool kept = in.host_version.minor == 2 && report.find("held after") != std::string::npos;
        const bool never_held =
            outcome.message == "Failed to acquire suite." && report.find("not held") != std::string::npos;
        return report.starts_with("suite \"PF Param Utils Suite\" ") && (kept || never_held);
    });
    return reports;
}

// A life in which one step fails again and again.
class FailingStep {
  public:
    const Circumstances& which;
    const int step;
    std::vector<Call> calls;  // when nothing fails
    int faults_met = 0;       // at the last failure

    FailingStep(const Circumstances& circumstances, int failing) : which(circumstances), step(failing) {
        Life usual(which);
        usual.live_until(kRender);
        good_ = usual.render().argb;
        begin();
        life_->take(step);
        calls = calls_of(life_->session);
    }

    // Takes the step once, so prepared, and sees that all is well in the end.
    Outcome take(const std::function<void(Life&)>& prepare) {
        begin();
        prepare(*life_);
        const Outcome outcome = life_->take(step);
        faults_met = life_->session.faults_met();
        life_->session.set_faults({});
        life_->amend = nullptr;
        EXPECT_EQ(reports_of(outcome, which), std::vector<std::string>{});
        recover();
        return outcome;
    }
    Outcome fail(const FaultPlan& plan) {
        return take([&](Life& life) { life.session.set_faults(plan); });
    }
    // True when some call failed.
    bool fails(const FaultPlan& plan) { return fail(plan), faults_met > 0; }

  private:
    // Other steps leave the life as it was, once the composition is; no new one is needed each time.
    [[nodiscard]] bool changes_life() const { return step < kPick || step >= sequence_setdown(); }
    void begin() {
        if (!life_ || changes_life()) {
            life_ = std::make_unique<Life>(which);
            life_->live_until(step);
            before_ = life_->comp;
        }
        life_->comp = before_;
    }
    void recover() {
        if (changes_life()) {  // it ends, and another one begins in the same session
            for (int last = std::max(step + 1, sequence_setdown()); last <= global_setdown(); ++last)
                EXPECT_EQ(life_->take(last).reports, std::vector<std::string>{});
            life_->comp = rich_composition(which.camera);
            life_->live_until(kRender);
        } else {
            life_->take(kPick);
        }
        const Frame after = life_->render();
        EXPECT_TRUE(after.outcome.ok()) << ::testing::PrintToString(after.outcome.reports);
        EXPECT_EQ(after.argb, good_);
    }

    std::vector<std::uint16_t> good_;
    std::unique_ptr<Life> life_;
    Composition before_;
};

template <class Check>
void for_each_step(Check check) {
    // The older host has the reach light looked after in every control update.
    static const Circumstances kHosts[] = {
        {"host of today"},
        {.name = "host without handles", .handle_callbacks = false},
        {"older host", false, {13, 2}, PF_Cmd_SEQUENCE_RESETUP, LightType::point, Depth::bits16},
    };
    for (const Circumstances& which : kHosts)
        for (int step = kGlobalSetup; step <= global_setdown(); ++step) {
            SCOPED_TRACE(std::string(which.name) + ", " + name_of_step(step));
            FailingStep failing(which, step);
            check(failing);
        }
}

// The suite of control updates is asked for in other versions, and done without; any other one the effect must have.
bool is_wanted(const std::string& suite) {
    return !suite.empty() && !suite.starts_with("PF Param Utils Suite");
}

// What the entry point, or the query, answers when this call answers this code.
PF_Err expected_error(int step, const std::string& call, A_Err code) {
    if (step == kParamsSetup) return call == "Inter.add_param" ? code : 0;
    if (step == kRender) return call == "Utils.iterate" ? code : 0;
    if (step < kFirstQuery || step >= sequence_setdown()) return 0;
    const Query& query = queries()[static_cast<std::size_t>(step - kFirstQuery)];
    const bool passed_on =
        !query.counts && call != "Basic.ReleaseSuite" && !call.starts_with("Ansi.") &&
        std::find(query.does_without.begin(), query.does_without.end(), call) == query.does_without.end();
    return passed_on ? code : 0;
}

TEST_F(Failures, EveryCallOfEveryCommandFailsInEveryWay) {
    for_each_step([](FailingStep& failing) {
        for (const auto& [name, nth, suite] : failing.calls)
            for (const Fault& fault : kFaults) {
                SCOPED_TRACE(name + " " + std::to_string(nth) + " " + suite + ", answer " +
                             std::to_string(fault.code) + ", bytes " + std::to_string(fault.byte));
                const Outcome outcome = failing.fail(FaultPlan().fail(name, nth, fault));
                if (failing.faults_met == 0) continue;
                ++cases;
                EXPECT_EQ(outcome.thrown, is_wanted(suite) ? std::optional(516) : std::nullopt);
                if (!fault.code || is_wanted(suite)) continue;
                EXPECT_EQ(outcome.error, expected_error(failing.step, name, fault.code));
                EXPECT_TRUE(failing.step == kRender || !outcome.message_is_error);
            }
    });
}

TEST_F(Failures, SeveralCallsFail) {
    std::mt19937 random(11);
    for_each_step([&](FailingStep& failing) {
        std::set<std::string> names;
        for (const Call& call : failing.calls) names.insert(call.name);
        for (const std::string& name : names)
            for (const Fault& fault : kFaults) {
                SCOPED_TRACE(name + ", answer " + std::to_string(fault.code));
                cases += failing.fails(FaultPlan().fail(name, FaultPlan::kEvery, fault));
            }
        for (std::size_t round = 0; round < 2 * failing.calls.size(); ++round) {
            FaultPlan plan;
            for (unsigned i = 0; i <= random() % 8; ++i) {
                const Call& call = failing.calls[random() % failing.calls.size()];
                plan.fail(call.name, call.nth, kFaults[random() % std::size(kFaults)]);
            }
            SCOPED_TRACE("round " + std::to_string(round));
            cases += failing.fails(plan);
        }
    });
}

TEST_F(Failures, WhatIsNotThere) {
    for_each_step([](FailingStep& failing) {
        std::set<std::string> suites;
        for (const Call& call : failing.calls) suites.insert(call.suite);
        suites.erase("");
        for (const std::string& suite : suites) {
            SCOPED_TRACE(suite);
            Life life(failing.which, {.withheld_suites = {suite}});
            life.live_until(failing.step);
            const Outcome outcome = life.take(failing.step);
            EXPECT_EQ(outcome.thrown, is_wanted(suite) ? std::optional(516) : std::nullopt);
            EXPECT_EQ(reports_of(outcome, failing.which), std::vector<std::string>{});
        }
        const bool updates = failing.step >= kUpdateUi && failing.step <= kRename;
        const Outcome no_suites =
            failing.take([](Life& l) { l.amend = [](PF_InData& in) { in.pica_basicP = nullptr; }; });
        EXPECT_EQ(no_suites.thrown, !suites.empty() && !updates ? std::optional(516) : std::nullopt);
        EXPECT_TRUE(failing.step == kAbout ||
                    no_suites.message == (updates ? "Failed to release suite." : ""));
        cases += static_cast<int>(suites.size()) + 1;
        if (failing.step >= sequence_setdown()) return;  // with nothing to give back
        const auto no_data = [](PF_InData& in) { in.sequence_data = in.global_data = nullptr; };
        EXPECT_EQ(failing.take([&](Life& l) { l.amend = no_data; }).thrown, std::nullopt);
        ++cases;
    });
}

}  // namespace
}  // namespace zam::test
