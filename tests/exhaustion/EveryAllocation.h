#pragma once

#include "tests/exhaustion/Allocations.h"
#include "tests/support/Failure.h"

#include <gtest/gtest.h>
#include <libxml/xmlerror.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

/// Too long for a string's own buffer.
inline const std::string longText(50, 't');

/// From one allocation that fails to the next: 1, unless MOX_EXHAUSTION_STEP in the environment
/// asks for fewer, where each takes long.
inline std::size_t AllocationStep()
{
    const char* wanted = std::getenv("MOX_EXHAUSTION_STEP");
    return wanted ? std::stoul(wanted) : 1;
}

/// Makes an attempt in which the first allocation fails, then one with the second and so on, until
/// none fails any more; both with one failure and with all from there on. Expects that nothing
/// leaks.
/// @param failing whose allocations fail
/// @param watched whose blocks must not leak
/// @param attempt takes a function that makes a call without memory and returns whether
///        the call reported that
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
                    // An attribute whose value libxml2 cannot copy is reported as missing.
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

/// Lets each allocation of an operation fail in turn, each time on a new subject.
///
/// Expected of every failure: std::bad_alloc arrives, or the operation could do without the memory
/// and has its whole result all the same; nothing leaks; the subject reads as it must, and the same
/// call succeeds on it once there is memory, with the very result that it has where nothing failed.
///
/// @param owner whose allocations fail
/// @param make gives a new subject
/// @param call the operation on the subject
/// @param describe the subject as text
/// @param check (before, after): expects what the operation promises of a failure, from the texts
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

/// A failure changes nothing.
inline void ExpectUnchanged(const std::string& before, const std::string& after)
{
    EXPECT_EQ(after, before);
}

/// A failure may leave the subject half done; it is only to be destroyed or to be tried again.
inline void ExpectUsable(const std::string&, const std::string&)
{}

template <class Make, class Call, class Describe, class Check = decltype(&ExpectUnchanged)>
void ExpectSurvival(Make make, Call call, Describe describe, Check check = ExpectUnchanged)
{
    ExpectSurvival(Allocations::Owner::All, make, call, describe, check);
}

/// The same for operations that make something from nothing.
template <class Call, class Describe>
void ExpectMade(Call make, Describe describe)
{
    using Made = decltype(make());
    ExpectSurvival([] { return Made(); }, [&](Made& made) { made = make(); }, describe);
}

/// The same for operations that give a text.
template <class Call>
void ExpectText(Call call)
{
    ExpectMade(call, [](const std::string& text) { return text; });
}

/// Operations must refuse what they are given, whatever they say.
template <class Call>
void ExpectRefused(Call call)
{
    EXPECT_NE(FailureOf(call), "no failure");
}
