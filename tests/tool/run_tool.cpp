#include "run_tool.h"

#include "support/package_file.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <iterator>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>

using namespace support;

std::string scratch_file(const std::string &name, const std::string &text)
{
    static const std::string folder = new_folder();
    write_text(folder + "/" + name, text);
    return folder + "/" + name;
}

std::string demo_using(const std::string &package)
{
    const std::string standard = "use STD_1149_1_2001.all;";
    std::string text = read_text(example("demo.bsd"));
    const size_t at = text.find(standard) + standard.size();
    return scratch_file("uses_" + package + ".bsd",
                        text.insert(at, "\n    use " + package + ".all;"));
}

std::string description_that_ends_its_process()
{
    for (int i = 0; i < 12; i++) {
        const std::string name = "nest" + std::to_string(i);
        scratch_file(name + ".all", PackageFile{.name = name}.text() + ";\nuse nest" +
                                        std::to_string(i + 1) + ".all;\n");
    }
    return demo_using("nest0");
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
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), read_text(out),
            read_text(err)};
}

ToolRun run_line(const std::string &arguments)
{
    std::istringstream words(arguments);
    return run_tool({std::istream_iterator<std::string>(words), {}});
}

bool contains(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

// What stands in the build folder is elsewhere on each machine.
static std::string masked(std::string text)
{
    const std::string build = TARNLET_BUILD_DIR;
    for (size_t at = 0; (at = text.find(build, at)) != std::string::npos;)
        text.replace(at, build.size(), "BUILD");
    return text;
}

void expect_golden_output(const std::string &output, const std::string &name)
{
    expect_golden("tool/golden/" + name, masked(output));
}
