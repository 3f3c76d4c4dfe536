#pragma once

#include <string>
#include <string_view>

// A file that takes its name only when it is complete: it is written beside that name and renamed
// at the end, so that no failure leaves half a file or spoils what was there. A link stays, and
// what it leads to is replaced; permissions stay as they were. What exists under the name and is no
// regular file (a device, a pipe) is written directly.
class NewFile
{
  public:
    explicit NewFile(const std::string &path);
    // What was written is dropped unless commit() has been called.
    ~NewFile();
    NewFile(const NewFile &) = delete;
    NewFile &operator=(const NewFile &) = delete;

    // After a failure the others do nothing.
    void write(std::string_view text);
    // Gives the file its name. False, and said on standard error, when it or any step before has
    // failed; all is as it was then.
    bool commit();

  private:
    void open_target();
    void open_beside();
    void write_through(std::string_view text);
    void fail();

    std::string path; // as it was given
    std::string target;
    std::string beside; // empty: written directly
    std::string buffer;
    std::string reason; // of the first failure
    int handle = -1;
};

// The whole of it.
bool write_new_file(const std::string &path, std::string_view text);
