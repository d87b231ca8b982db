#include "plot/TestSupport.h"

#include "orn/text/Encoding.h"

#include <cstring>
#include <memory>
#include <stdexcept>

#include <cairo.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace plottest {

int startAndWait(std::vector<std::wstring> const& arguments, std::filesystem::path const& out,
                 std::filesystem::path const& error) {
    std::vector<std::string> texts{
        std::filesystem::read_symlink("/proc/self/exe").replace_filename("orn-plot").string()};
    for (std::wstring const& argument : arguments) texts.push_back(getMBS(argument));
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, error.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t process = 0;
    int const failed = posix_spawn(&process, pointers[0], &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    if (failed != 0 || waitpid(process, &status, 0) != process) throw std::runtime_error{"orn-plot does not start"};
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

Image readPng(std::filesystem::path const& path) {
    std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> const surface{
        cairo_image_surface_create_from_png(path.c_str()), cairo_surface_destroy};
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) throw std::runtime_error{"no PNG file"};
    Image image;
    image.width = cairo_image_surface_get_width(surface.get());
    image.height = cairo_image_surface_get_height(surface.get());
    for (int y = 0; y < image.height; ++y) {
        unsigned char const* row = cairo_image_surface_get_data(surface.get()) +
                                   std::ptrdiff_t{y} * cairo_image_surface_get_stride(surface.get());
        for (int x = 0; x < image.width; ++x, row += 4) {
            image.pixels.push_back(static_cast<std::uint32_t>(row[2] << 16 | row[1] << 8 | row[0]));
        }
    }
    return image;
}

}
