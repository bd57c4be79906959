#pragma once

#include "mox/host/HostError.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

/// Tests that share one subject on a Vulkan device, with the validation layer enabled. They are
/// skipped if there is no device.
/// @tparam Subject default-constructible, with a member ValidationMessages
template <class Subject>
class DeviceTest : public testing::Test
{
protected:
    void SetUp() override
    {
        const SharedSubject& shared = Shared();
        if (shared.Failure.starts_with("no Vulkan device was found"))
            GTEST_SKIP() << shared.Failure;
        ASSERT_TRUE(shared.Made) << shared.Failure;
    }

    void TearDown() override
    {
        SharedSubject& shared = Shared();
        if (!shared.Made)
            return;
        const auto& messages = shared.Made->ValidationMessages();
        for (; shared.MessagesSeen < messages.size(); ++shared.MessagesSeen)
            ADD_FAILURE() << messages[shared.MessagesSeen];
    }

    static Subject& Get() { return *Shared().Made; }

private:
    struct SharedSubject
    {
        std::unique_ptr<Subject> Made;
        std::string Failure;
        std::size_t MessagesSeen = 0;
    };

    /// Destroyed before the device's loader is unloaded.
    static SharedSubject& Shared()
    {
        static SharedSubject shared = [] {
            SharedSubject made;
            try {
                made.Made = std::make_unique<Subject>();
            } catch (const Mox::Host::HostError& error) {
                made.Failure = error.what();
            }
            return made;
        }();
        return shared;
    }
};
