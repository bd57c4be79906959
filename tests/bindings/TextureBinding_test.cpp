#include "mox/bindings/TextureBinding.h"
#include "tests/support/Failure.h"
#include "tests/support/XmlElement.h"

#include <gtest/gtest.h>

using namespace Mox::Materials;

namespace {

std::string ReadAndWrite(TextureBinding& binding, const std::string& attributes)
{
    const XmlElement source(attributes);
    binding.ReadXml(source.Get());
    const XmlElement target;
    binding.WriteXml(target.Get());
    return target.Attributes();
}

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

TEST(TextureBinding, AMissingAttributeResetsItsField)
{
    TextureBinding binding(StreamType::Texture, "a", 1);
    const char* all = "srgb=\"Yes\" signed_expanded=\"Yes\" normalised=\"No\" "
                      "usage_hint=\"Normal\" using_alpha=\"Yes\"";
    EXPECT_EQ(ReadAndWrite(binding, all), "tag=\"a\" " + std::string(all));
    EXPECT_EQ(ReadAndWrite(binding, "default='rock.png'"), "tag=\"a\" default=\"rock.png\"");
    EXPECT_EQ(ReadAndWrite(binding, "srgb='No' normalised='Yes'"),
              "tag=\"a\" default=\"rock.png\"");
}

TEST(TextureBinding, ABadBooleanStopsTheReadBehindTheBaseFields)
{
    for (const char* name : {"srgb", "signed_expanded", "normalised", "using_alpha"}) {
        TextureBinding binding(StreamType::Texture, "a", 1);
        binding.usageHint = "Normal";
        EXPECT_EQ(
            FailureOf([&] { ReadAndWrite(binding, "tag='b' " + std::string(name) + "='yes'"); }),
            "attribute \"" + std::string(name) + "\" contains invalid boolean data \"yes\"");
        EXPECT_EQ(binding.tag, "b");
        EXPECT_EQ(binding.usageHint, "");
    }
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
