#include "mox/bindings/TextureBinding.h"
#include "tests/support/Failure.h"
#include "tests/support/XmlElement.h"

#include <gtest/gtest.h>

using namespace Mox::Materials;

namespace {

TEST(StringBinding, HasOneValueWhateverTheIndex)
{
    StringBinding binding(StreamType::Uv, "a", 1);
    binding.value = "unset";
    EXPECT_EQ(binding.GetDefaultText(), "") << "nobody has set it";
    EXPECT_EQ(binding.GetDefaultString(7), "unset");
    binding.SetDefault(7, std::string("map1"));
    EXPECT_EQ(binding.GetDefaultString(0), "map1");
    EXPECT_EQ(binding.GetDefaultText(), "map1");
    binding.SetDefault(0, 1.0f);
    EXPECT_EQ(binding.GetDefaultText(), "map1");
    binding.SetDefaultText("");
    EXPECT_TRUE(binding.hasDefault);
    const XmlElement element;
    binding.WriteXml(element.Get());
    EXPECT_EQ(element.Attributes(), "tag=\"a\"");
}

TEST(TextureBinding, IsToldByItsStreamTypeAlone)
{
    const auto texture = CreateBinding(StreamType::Texture, "a", 1);
    EXPECT_EQ(AsTextureBinding(texture), texture);
    EXPECT_EQ(FailureOf([] { AsTextureBinding(CreateBinding(StreamType::Uv, "a", 1)); }),
              "Cannot cast \"uv\" into a TextureBinding");
    EXPECT_EQ(FailureOf([] { AsTextureBinding(CreateBinding(StreamType::Float, "a", 1)); }),
              "Cannot cast \"float\" into a TextureBinding");
}

} // namespace
