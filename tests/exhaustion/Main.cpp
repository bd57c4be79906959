#include "tests/exhaustion/Allocations.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    Allocations::TakeOverXml();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
