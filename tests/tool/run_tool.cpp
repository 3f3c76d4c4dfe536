#include "run_tool.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

static std::string read_whole(const fs::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string scratch_file(const std::string &name, const std::string &text)
{
    // Cases run side by side, each in a process of its own.
    const fs::path folder =
        fs::path(TARNLET_BUILD_DIR) / "tests" / "scratch" / ("tool-" + std::to_string(getpid()));
    fs::create_directories(folder);
    std::ofstream(folder / name, std::ios::binary) << text;
    return folder / name;
}

ToolRun run_tool(const std::vector<std::string> &arguments, const std::string &input)
{
    const std::string in = scratch_file("stdin", input);
    const std::string out = scratch_file("stdout", "");
    const std::string err = scratch_file("stderr", "");
    std::vector<char *> argv = {const_cast<char *>(TARNLET_TOOL)};
    for (const std::string &argument : arguments)
        argv.push_back(const_cast<char *>(argument.c_str()));
    argv.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, 0, in.c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, 1, out.c_str(), O_WRONLY | O_APPEND, 0);
    posix_spawn_file_actions_addopen(&files, 2, err.c_str(), O_WRONLY | O_APPEND, 0);
    pid_t child;
    const int failed = posix_spawn(&child, TARNLET_TOOL, &files, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    if (failed) {
        ADD_FAILURE() << TARNLET_TOOL << ": " << std::strerror(failed);
        return {};
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR)
        continue;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), read_whole(out),
            read_whole(err)};
}

// What stands in the build folder is elsewhere on each machine.
static std::string masked(std::string text)
{
    const std::string build = TARNLET_BUILD_DIR;
    for (size_t at = 0; (at = text.find(build, at)) != std::string::npos;)
        text.replace(at, build.size(), "BUILD");
    return text;
}

void expect_golden(const std::string &output, const std::string &name)
{
    const std::string text = masked(output);
    const fs::path path = fs::path(TARNLET_SOURCE_DIR) / "tests" / "tool" / "golden" / name;
    if (const char *update = std::getenv("TARNLET_UPDATE"); update && *update == '1') {
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
    }
    EXPECT_EQ(text, read_whole(path)) << name;
}
