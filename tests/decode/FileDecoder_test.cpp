#include "mox/Text.h"
#include "mox/decode/FileDecoder.h"
#include "mox/host/HostError.h"
#include "mox/host/Picture.h"
#include "tests/support/Failure.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

using namespace Mox::Host;
using Mox::Materials::Compose;

namespace {

class FileDecoderTest : public testing::Test
{
protected:
    /// Replaces the decoding program with a shell script.
    void UseScript(const std::string& lines)
    {
        _settings.Program = _folder.Write("decode.sh", "#!/bin/sh\n" + lines + "\n");
        std::filesystem::permissions(_settings.Program, std::filesystem::perms::owner_all);
    }

    std::string FailureOfTexture(const std::filesystem::path& file)
    {
        const std::string failure =
            HostFailureOf([&] { FileDecoder(_settings).ReadTexture(file); });
        const std::string start = file.string() + ": cannot be read: ";
        EXPECT_TRUE(failure.starts_with(start)) << failure;
        return failure.substr(std::min(start.size(), failure.size()));
    }

    std::filesystem::path WriteWhite(const std::string& name, std::uint32_t side) const
    {
        const std::vector<std::uint8_t> pixels(std::size_t(4) * side * side, 255);
        WritePng({side, side, pixels}, _folder.Path() / name);
        return _folder.Path() / name;
    }

    TemporaryFolder _folder;
    std::filesystem::path _white = WriteWhite("white.png", 1);
    DecodeSettings _settings;
};

TEST_F(FileDecoderTest, ReadsRegularFilesOnly)
{
    const std::filesystem::path pipe = _folder.Path() / "pipe.png";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::filesystem::path link = _folder.Path() / "link.png";
    std::filesystem::create_symlink("/dev/zero", link);
    for (const auto& file : {pipe, std::filesystem::path("/dev/zero"), link, _folder.Path()})
        EXPECT_EQ(FailureOfTexture(file), "it is not a regular file") << file;
    EXPECT_EQ(FailureOfTexture(_folder.Path() / "gone.png"), "No such file or directory");
    EXPECT_EQ(FailureOfTexture(_folder.Write("empty.png")),
              "it is not a PNG, JPEG, OpenEXR or HDR image");
}

TEST_F(FileDecoderTest, SurvivesItsProgram)
{
    const std::string program = DefaultDecodeProgram();
    const std::pair<std::string, std::string> cases[] = {
        {"exec sleep 600", "decoding takes longer than the limit of 1 seconds"},
        {"exec >&-; exec sleep 600", "the decoder failed: Killed"},
        {"kill -SEGV $$", "the decoder failed: Segmentation fault"},
        {"kill -KILL $$", "the decoder failed: Killed"},
        {"exit 3", "the decoder failed: its output is incomplete"},
        {"printf moxdec01", "the decoder failed: its output is incomplete"},
        {"'" + program + "' \"$@\" | head -c 50", "the decoder failed: its output is incomplete"},
        {"'" + program + "' \"$@\"; echo", "the decoder failed: its output is too long"},
        {"yes", "the output of the decoder is invalid"},
        {"'" + program + "' obj 1 1 1", "it is larger than the limit of 0 MB"},
    };
    _settings.Limits.Seconds = 1;
    for (const auto& [script, message] : cases) {
        UseScript(script);
        EXPECT_EQ(FailureOfTexture(_white), message) << script;
    }
    for (const char* name : {"gone", "white.png"}) {
        _settings.Program = _folder.Path() / name;
        EXPECT_EQ(FailureOfTexture(_white),
                  Compose("cannot run the decoder \"", _settings.Program.string(), "\": ",
                          name == std::string("gone") ? "No such file or directory"
                                                      : "Permission denied"));
    }
}

TEST_F(FileDecoderTest, WorksWhateverTheHostDoesWithSignalsAndFiles)
{
    const auto before = std::signal(SIGCHLD, SIG_IGN); // the exit status of children is not
                                                       // available
    EXPECT_EQ(FileDecoder().ReadTexture(_white)->Width, 1u);
    std::signal(SIGCHLD, before);
    // The decoder must not inherit the host's open files.
    constexpr int hostsFile = 40;
    dup2(STDOUT_FILENO, hostsFile);
    UseScript(Compose("[ -e /proc/$$/fd/", hostsFile, " ] || [ -e /proc/$$/fd/3 ] || exec '",
                      DefaultDecodeProgram().string(), "' \"$@\""));
    EXPECT_EQ(FileDecoder(_settings).ReadTexture(_white)->Width, 1u);
    close(hostsFile);
    // With the standard streams closed, other files get their descriptors.
    EXPECT_EXIT(
        {
            for (int i = 0; i < 3; ++i)
                close(i);
            _exit(FileDecoder().ReadTexture(_white)->Width == 1 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(FileDecoderTest, DecodesEachFileOnce)
{
    UseScript(Compose("echo >>'", (_folder.Path() / "runs").string(), "'\nexec '",
                      DefaultDecodeProgram().string(), "' \"$@\""));
    FileDecoder decoder(_settings);
    const auto runs = [&] { return _folder.Read("runs").size(); };
    const auto first = decoder.ReadTexture(_white);
    std::filesystem::create_hard_link(_white, _folder.Path() / "same.png");
    EXPECT_EQ(decoder.ReadTexture(_folder.Path() / "same.png"), first);
    EXPECT_EQ(runs(), 1u);
    // A file that failed is not decoded again until it changes.
    const std::filesystem::path bad = _folder.Write("bad.png", "bad");
    for (int i = 0; i < 2; ++i)
        EXPECT_THROW(decoder.ReadTexture(bad), HostError);
    EXPECT_EQ(runs(), 2u);
    WriteWhite("bad.png", 2);
    EXPECT_EQ(decoder.ReadTexture(bad)->Width, 2u);
    EXPECT_EQ(runs(), 3u);
    // A file that is overwritten in place may keep its size.
    const auto time = std::filesystem::last_write_time(_white);
    _folder.Write("white.png", std::string(std::filesystem::file_size(_white), 'x'));
    std::filesystem::last_write_time(_white, time + std::chrono::seconds(1));
    EXPECT_THROW(decoder.ReadTexture(_white), HostError);
}

TEST_F(FileDecoderTest, ForgetsWhatTakesTooMuchMemory)
{
    _settings.Limits.Bytes = 4096;
    FileDecoder decoder(_settings);
    const std::filesystem::path large = WriteWhite("a.png", 30);
    const auto first = decoder.ReadTexture(large);
    EXPECT_EQ(decoder.ReadTexture(large), first);
    decoder.ReadTexture(WriteWhite("b.png", 30));
    EXPECT_NE(decoder.ReadTexture(large), first);
}

} // namespace
