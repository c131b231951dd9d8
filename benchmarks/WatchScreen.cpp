// Starts a program and looks at the screen until a colour is there, then presses keys and looks for the other
// one: what people wait for, whatever the program does. Prints milliseconds to the first pixels, the median
// of those from a key to the other page's, and the memory of all its processes in KiB (proportional set
// sizes).
//
//     tessel-watch-screen PRESSES KEY-DOWN KEY-UP RRGGBB RRGGBB PROGRAM ARGUMENT…
//
// A key is one as in "Down", or with a modifier before it as in "Alt_L+Down".
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto patience = std::chrono::seconds(30);

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

class Watcher {
public:
    Watcher() : display_(XOpenDisplay(nullptr)) {
        if (!display_) std::exit(2);
    }
    ~Watcher() { XCloseDisplay(display_); }
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    bool shows(unsigned long colour) const {
        const int screen = DefaultScreen(display_);
        XImage* const image =
            XGetImage(display_, RootWindow(display_, screen), 0, 0, unsigned(DisplayWidth(display_, screen)),
                      unsigned(DisplayHeight(display_, screen)), AllPlanes, ZPixmap);
        bool found = false;
        for (int y = 0; y < image->height && !found; y += 4)
            for (int x = 0; x < image->width && !found; x += 4)
                found = (XGetPixel(image, x, y) & 0xFFFFFF) == colour;
        XDestroyImage(image);
        return found;
    }
    // Milliseconds from `start` until the colour is there.
    double waitFor(unsigned long colour, Clock::time_point start) const {
        while (!shows(colour)) {
            if (Clock::now() - start > patience) {
                std::fprintf(stderr, "%06lx never came\n", colour);
                std::exit(1);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return millisecondsSince(start);
    }
    void press(const std::string& keys) const {
        const std::size_t plus = keys.find('+');
        const std::string modifier = plus == std::string::npos ? "" : keys.substr(0, plus);
        const std::string key = plus == std::string::npos ? keys : keys.substr(plus + 1);
        if (!modifier.empty()) send(modifier, True);
        send(key, True);
        send(key, False);
        if (!modifier.empty()) send(modifier, False);
        XFlush(display_);
    }

private:
    void send(const std::string& name, Bool down) const {
        XTestFakeKeyEvent(display_, XKeysymToKeycode(display_, XStringToKeysym(name.c_str())), down,
                          CurrentTime);
    }

    Display* display_;
};

// Of the program and all it has started.
long memoryOf(pid_t program) {
    std::map<pid_t, pid_t> parents;
    for (const auto& process : std::filesystem::directory_iterator("/proc")) {
        std::ifstream file(process.path() / "stat");
        std::string line;
        std::getline(file, line);
        const std::size_t end = line.rfind(')');
        if (end != std::string::npos)
            parents[pid_t(std::stol(line))] = pid_t(std::stol(line.substr(end + 4)));
    }
    long sum = 0;
    for (const auto& [process, parent] : parents) {
        pid_t up = process;
        while (up != program && parents.contains(up)) up = parents[up];
        if (up != program) continue;
        std::ifstream file("/proc/" + std::to_string(process) + "/smaps_rollup");
        for (std::string line; std::getline(file, line);)
            if (line.starts_with("Pss:")) sum += std::stol(line.substr(4));
    }
    return sum;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 7) return 2;
    const int presses = std::atoi(argv[1]);
    const std::string keys[] = {argv[2], argv[3]};
    const unsigned long colours[] = {std::strtoul(argv[4], nullptr, 16), std::strtoul(argv[5], nullptr, 16)};
    const Watcher screen;
    const auto start = Clock::now();
    const pid_t program = fork();
    if (program == 0) {
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, 1);
        dup2(nowhere, 2);
        setpgid(0, 0);
        execvp(argv[6], argv + 6);
        _exit(127);
    }
    const double first = screen.waitFor(colours[0], start);
    std::this_thread::sleep_for(std::chrono::seconds(2)); // until all is quiet
    const long memory = memoryOf(program);
    std::vector<double> turns;
    for (int press = 0; press < presses; ++press) {
        const auto pressed = Clock::now();
        screen.press(keys[press % 2]);
        turns.push_back(screen.waitFor(colours[1 - press % 2], pressed));
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
    }
    std::ranges::sort(turns);
    std::printf("%.0f %.1f %ld\n", first, turns.empty() ? 0.0 : turns[turns.size() / 2], memory);
    kill(-program, SIGTERM);
    waitpid(program, nullptr, 0);
}
