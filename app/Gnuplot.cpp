#include "app/Gnuplot.h"

#include "app/Failure.h"
#include "app/Output.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sstream>

#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace {

// A file in memory.
class MemoryFile {
public:
    explicit MemoryFile(char const *name) : m_descriptor(memfd_create(name, MFD_CLOEXEC)) {
        if (m_descriptor < 0)
            Fail();
    }
    ~MemoryFile() { close(m_descriptor); }
    MemoryFile(MemoryFile const &) = delete;
    MemoryFile &operator=(MemoryFile const &) = delete;

    int Descriptor() const { return m_descriptor; }

    void Write(std::string_view text) {
        while (!text.empty()) {
            ssize_t const written = write(m_descriptor, text.data(), text.size());
            if (written < 0 && errno != EINTR)
                Fail();
            text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
        }
        lseek(m_descriptor, 0, SEEK_SET);
    }

    // All of it.
    std::string Read() const {
        std::string text;
        char buffer[1 << 16];
        for (ssize_t read = 0;
             (read = pread(m_descriptor, buffer, sizeof buffer, static_cast<off_t>(text.size()))) > 0;)
            text.append(buffer, static_cast<std::size_t>(read));
        return text;
    }

private:
    [[noreturn]] static void Fail() {
        throw Problem(ExceptionMessage::translate("What gnuplot reads or writes can't be kept: {1}.") %
                      std::strerror(errno));
    }

    int m_descriptor;
};

// The line of gnuplot's complaint that tells what is wrong: the last one that is not empty.
std::string LastLine(std::string const &text) {
    std::istringstream lines(text);
    std::string last = "it tells no reason";
    for (std::string line; std::getline(lines, line);)
        if (line.find_first_not_of(" \t\r^") != std::string::npos)
            last = line.substr(line.find_first_not_of(" \t"));
    return last;
}

pid_t Start(int input, int output, int errors) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);
    char name[] = "gnuplot";
    char withoutUserSettings[] = "-d";
    char *arguments[] = {name, withoutUserSettings, nullptr};
    pid_t process = 0;
    int const error = posix_spawnp(&process, name, &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error == ENOENT)
        throw Problem(ExceptionMessage::translate("Pictures are drawn by gnuplot, which is not installed (Debian "
                                                  "package gnuplot-nox)."));
    if (error != 0)
        throw Problem(ExceptionMessage::translate("gnuplot can't be started: {1}.") % std::strerror(error));
    return process;
}

void RunGnuplot(std::string const &script, int output) {
    MemoryFile input("script");
    input.Write(script);
    MemoryFile const errors("errors");
    pid_t const process = Start(input.Descriptor(), output, errors.Descriptor());
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR)
        ;
    Interrupt::Check();
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || lseek(output, 0, SEEK_END) == 0)
        throw Problem(ExceptionMessage::translate("gnuplot fails: {1}.") % LastLine(errors.Read()));
}

} // namespace

bool IsPng(std::filesystem::path const &picture) {
    std::string const kind = picture.extension().string();
    if (kind != ".png" && kind != ".svg")
        throw UsageError("The picture " + picture.string() + " is neither .svg nor .png");
    return kind == ".png";
}

void WritePicture(std::string const &script, std::filesystem::path const &picture,
                  std::filesystem::path const &project) {
    DraftFile file(picture, project);
    RunGnuplot(script, file.Descriptor());
    file.Commit();
}

std::string PictureText(std::string const &script) {
    MemoryFile const picture("picture");
    RunGnuplot(script, picture.Descriptor());
    return picture.Read();
}
