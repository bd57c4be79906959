#pragma once

#include "mox/host/HostError.h"
#include "tests/exhaustion/Allocations.h"

#include <gtest/gtest.h>
#include <libxml/xmlerror.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

/// Too long for a string's internal buffer.
inline const std::string longText(50, 't');

/// The distance between failing allocations: 1, unless the environment variable MOX_EXHAUSTION_STEP
/// sets a larger one because each attempt is slow.
inline std::size_t AllocationStep()
{
    const char* wanted = std::getenv("MOX_EXHAUSTION_STEP");
    return wanted ? std::stoul(wanted) : 1;
}

/// Makes attempts in which the first allocation fails, then the second and so on, until none fails
/// any more, both with a single failure and with all later allocations failing as well. Expects
/// that nothing leaks.
/// @param failing whose allocations fail
/// @param watched whose blocks must not leak
/// @param attempt receives a function that makes a call without memory and returns whether the call
///        reported it
template <class Attempt>
void ForEachAllocation(Allocations::Owner failing, Allocations::Owner watched, Attempt attempt)
{
    for (const auto shortage : {Allocations::Shortage::Once, Allocations::Shortage::Lasting}) {
        std::size_t number = 1;
        bool hasFailed = true;
        for (; hasFailed && !::testing::Test::HasFailure(); number += AllocationStep()) {
            SCOPED_TRACE("allocation " + std::to_string(number) +
                         (shortage == Allocations::Shortage::Once ? "" : " and all behind it"));
            xmlResetLastError();
            const std::size_t live = Allocations::LiveCount(watched);
            attempt([&](auto call) {
                bool isReported = false;
                Allocations::FailAt(number, shortage, failing);
                try {
                    call();
                } catch (const std::bad_alloc&) {
                    isReported = true;
                } catch (const std::exception& error) {
                    // If libxml2 cannot copy an attribute's value, the attribute is reported as
                    // missing.
                    isReported = std::strstr(error.what(), "failed to find \"") != nullptr;
                    if (!isReported)
                        throw;
                }
                hasFailed = Allocations::EndFailing();
                xmlResetLastError();
                return isReported;
            });
            EXPECT_EQ(Allocations::LiveCount(watched), live) << "blocks leak";
        }
        EXPECT_GT(number, 1 + AllocationStep()) << "the operation does not allocate";
    }
}

/// Makes each allocation of an operation fail in turn, each time with a new subject.
///
/// After each failure, the operation has either thrown std::bad_alloc or succeeded without the
/// memory, with its complete result; nothing leaks; the subject passes the check; and the same call
/// succeeds on it once memory is available, with the same result as without a failure.
///
/// @param owner whose allocations fail
/// @param make creates a new subject
/// @param call the operation on the subject
/// @param describe formats the subject
/// @param check receives the descriptions before and after, and expects what the operation
///        guarantees after a failure
template <class Make, class Call, class Describe, class Check>
void ExpectSurvival(Allocations::Owner owner, Make make, Call call, Describe describe, Check check)
{
    const std::string expected = [&] {
        auto subject = make();
        call(subject);
        return describe(subject);
    }();
    ForEachAllocation(owner, owner, [&](auto isOutOfMemory) {
        auto subject = make();
        const std::string before = describe(subject);
        if (isOutOfMemory([&] { call(subject); })) {
            check(before, describe(subject));
            call(subject);
        }
        EXPECT_EQ(describe(subject), expected);
    });
}

/// For operations that change nothing if they fail.
inline void ExpectUnchanged(const std::string& before, const std::string& after)
{
    EXPECT_EQ(after, before);
}

/// For operations that may leave the subject incomplete, fit only to be destroyed or to be retried.
inline void ExpectUsable(const std::string&, const std::string&)
{}

template <class Make, class Call, class Describe, class Check = decltype(&ExpectUnchanged)>
void ExpectSurvival(Make make, Call call, Describe describe, Check check = ExpectUnchanged)
{
    ExpectSurvival(Allocations::Owner::All, make, call, describe, check);
}

/// The same for operations that create something.
template <class Call, class Describe>
void ExpectMade(Call make, Describe describe, Allocations::Owner owner = Allocations::Owner::All)
{
    using Made = decltype(make());
    ExpectSurvival(
        owner, [] { return Made(); }, [&](Made& made) { made = make(); }, describe,
        ExpectUnchanged);
}

/// The same for operations that return a string.
template <class Call>
void ExpectText(Call call, Allocations::Owner owner = Allocations::Owner::All)
{
    ExpectMade(
        call, [](const std::string& text) { return text; }, owner);
}

/// For operations that return a string while libxml2's allocations fail. libxml2 then leaks blocks
/// and reports what it lost as errors in the document, so the test only expects that there is no
/// wrong result and that nothing else leaks.
template <class Call>
void ExpectNoFalseResult(Call call)
{
    const std::string expected = call();
    using Allocations::Owner;
    ForEachAllocation(Owner::Xml, Owner::New, [&](auto isOutOfMemory) {
        std::string result = expected;
        isOutOfMemory([&] {
            try {
                result = call();
            } catch (const Mox::Host::HostError&) {
            }
        });
        EXPECT_EQ(result, expected);
    });
}

template <class Call>
void ExpectAllOrNothing(Call call)
{
    ExpectText(call, Allocations::Owner::New);
    ExpectNoFalseResult(call);
}
