// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Watches a program start from outside, as the X server sees it: starts the program and
// reports the milliseconds from just before its exec to the first drawing into one of its
// mapped top-level windows (a window whose _NET_WM_PID is the program), which is the
// first frame a person sees. The X DAMAGE extension reports the drawing; windows are
// watched from their creation on, so none of it is missed. Qt's windows have no
// background of their own, so mapping alone draws nothing.
//
// tarvik-bench-firstframe [-t SECONDS] [-m SECONDS [-l LIBRARY]] -- PROGRAM [ARGUMENTS...]
//   -t  give up after this long without a frame (default 30)
//   -m  after the frame, wait this long and report the resident memory of the program and
//       of every process it started
//   -l  with -m: first wait (within -t) until the program has mapped a file whose name
//       contains LIBRARY, e.g. a plugin it loads after its first frame
// Prints "frame MS" and, with -m, "resident KB" and "proportional KB"; then ends the program
// (SIGTERM) and prints "exit MS", the time from the start to its end. Exit status 0 when a frame
// was seen (and LIBRARY mapped), 1 otherwise.
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/extensions/Xdamage.h>
#include <dirent.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace {

double nowMs()
{
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return ts.tv_sec * 1e3 + ts.tv_nsec / 1e6;
}

long windowPid(Display* pDisplay, Window window, Atom pidAtom)
{
    Atom type = None;
    int iFormat = 0;
    unsigned long ulItems = 0;
    unsigned long ulAfter = 0;
    unsigned char* pData = nullptr;
    long iPid = -1;
    if (XGetWindowProperty(pDisplay, window, pidAtom, 0, 1, False, XA_CARDINAL, &type, &iFormat,
                           &ulItems, &ulAfter, &pData) == Success &&
        pData && type == XA_CARDINAL && iFormat == 32 && ulItems == 1)
        iPid = static_cast<long>(*reinterpret_cast<unsigned long*>(pData));
    if (pData)
        XFree(pData);
    return iPid;
}

// Resident and proportional (shared pages divided among their users) kilobytes of root
// and all its descendants.
struct Memory
{
    long iResidentKb = 0;
    long iProportionalKb = 0;
};

long fieldKb(const std::string& strFile, const std::string& strKey)
{
    std::ifstream in(strFile);
    std::string strLine;
    while (std::getline(in, strLine)) {
        std::istringstream fields(strLine);
        std::string strName;
        long iValue = 0;
        fields >> strName >> iValue;
        if (strName == strKey)
            return iValue;
    }
    return 0;
}

Memory treeMemory(pid_t root)
{
    std::map<long, long> parents;
    DIR* pDir = opendir("/proc");
    if (!pDir)
        return {};
    while (dirent* pEntry = readdir(pDir)) {
        char* pEnd = nullptr;
        const long iPid = std::strtol(pEntry->d_name, &pEnd, 10);
        if (*pEnd || iPid <= 0)
            continue;
        parents[iPid] = fieldKb("/proc/" + std::string(pEntry->d_name) + "/status", "PPid:");
    }
    closedir(pDir);
    Memory memory;
    for (const auto& entry : parents) {
        for (long p = entry.first; p > 1; p = parents.count(p) ? parents[p] : 0) {
            if (p == root) {
                const std::string strDir = "/proc/" + std::to_string(entry.first) + "/";
                memory.iResidentKb += fieldKb(strDir + "status", "VmRSS:");
                memory.iProportionalKb += fieldKb(strDir + "smaps_rollup", "Pss:");
                break;
            }
        }
    }
    return memory;
}

bool hasMapped(pid_t pid, const char* pszName)
{
    std::ifstream maps("/proc/" + std::to_string(pid) + "/maps");
    std::string strLine;
    while (std::getline(maps, strLine))
        if (strLine.find(pszName) != std::string::npos)
            return true;
    return false;
}

// Events until the deadline; false on time-out or when the child has ended.
bool waitForEvent(Display* pDisplay, double dDeadlineMs, pid_t child)
{
    while (!XPending(pDisplay)) {
        if (waitpid(child, nullptr, WNOHANG) == child)
            return false;
        const double dLeft = dDeadlineMs - nowMs();
        if (dLeft <= 0)
            return false;
        pollfd fd{ConnectionNumber(pDisplay), POLLIN, 0};
        poll(&fd, 1, dLeft < 20 ? static_cast<int>(dLeft) + 1 : 20);
    }
    return true;
}

}  // namespace

int main(int argc, char** argv)
{
    double dTimeoutS = 30;
    double dMemoryWaitS = -1;
    const char* pszLibrary = nullptr;
    int iOpt = 0;
    while ((iOpt = getopt(argc, argv, "+t:m:l:")) != -1) {
        if (iOpt == 't')
            dTimeoutS = std::atof(optarg);
        else if (iOpt == 'm')
            dMemoryWaitS = std::atof(optarg);
        else if (iOpt == 'l')
            pszLibrary = optarg;
        else
            return 2;
    }
    if (optind >= argc) {
        std::fprintf(stderr, "usage: %s [-t S] [-m S [-l LIBRARY]] -- PROGRAM [ARGS...]\n",
                     argv[0]);
        return 2;
    }
    Display* pDisplay = XOpenDisplay(nullptr);
    if (!pDisplay) {
        std::fprintf(stderr, "firstframe: cannot open the display\n");
        return 2;
    }
    int iDamageEvent = 0;
    int iDamageError = 0;
    if (!XDamageQueryExtension(pDisplay, &iDamageEvent, &iDamageError)) {
        std::fprintf(stderr, "firstframe: the X server has no DAMAGE extension\n");
        return 2;
    }
    const Atom pidAtom = XInternAtom(pDisplay, "_NET_WM_PID", False);
    const Window root = DefaultRootWindow(pDisplay);
    XSelectInput(pDisplay, root, SubstructureNotifyMask);
    XSync(pDisplay, False);

    const double dStartMs = nowMs();
    const pid_t child = fork();
    if (child < 0)
        return 2;
    if (child == 0) {
        close(ConnectionNumber(pDisplay));
        execvp(argv[optind], argv + optind);
        std::fprintf(stderr, "firstframe: cannot run %s: %s\n", argv[optind], strerror(errno));
        _exit(127);
    }

    // Top-level windows made since the start: whether mapped.
    std::map<Window, bool> mapped;
    double dFrameMs = -1;
    const double dDeadlineMs = dStartMs + dTimeoutS * 1000;
    while (dFrameMs < 0 && waitForEvent(pDisplay, dDeadlineMs, child)) {
        XEvent event;
        XNextEvent(pDisplay, &event);
        if (event.type == CreateNotify && event.xcreatewindow.parent == root) {
            XDamageCreate(pDisplay, event.xcreatewindow.window, XDamageReportNonEmpty);
            mapped[event.xcreatewindow.window] = false;
        } else if (event.type == MapNotify && mapped.count(event.xmap.window)) {
            mapped[event.xmap.window] = true;
        } else if (event.type == UnmapNotify && mapped.count(event.xunmap.window)) {
            mapped[event.xunmap.window] = false;
        } else if (event.type == iDamageEvent + XDamageNotify) {
            const double dAtMs = nowMs();
            const auto* pDamage = reinterpret_cast<XDamageNotifyEvent*>(&event);
            XDamageSubtract(pDisplay, pDamage->damage, None, None);
            const auto it = mapped.find(pDamage->drawable);
            if (it != mapped.end() && it->second &&
                windowPid(pDisplay, pDamage->drawable, pidAtom) == child)
                dFrameMs = dAtMs - dStartMs;
        }
    }
    if (dFrameMs >= 0)
        std::printf("frame %.1f\n", dFrameMs);
    else
        std::fprintf(stderr, "firstframe: no frame from %s\n", argv[optind]);
    int iStatus = dFrameMs >= 0 ? 0 : 1;
    if (dFrameMs >= 0 && dMemoryWaitS >= 0) {
        while (pszLibrary && !hasMapped(child, pszLibrary) && nowMs() < dDeadlineMs)
            usleep(20000);
        if (pszLibrary && !hasMapped(child, pszLibrary)) {
            std::fprintf(stderr, "firstframe: %s did not map %s\n", argv[optind], pszLibrary);
            iStatus = 1;
        } else {
            usleep(static_cast<useconds_t>(dMemoryWaitS * 1e6));
            const Memory memory = treeMemory(child);
            std::printf("resident %ld\nproportional %ld\n", memory.iResidentKb,
                        memory.iProportionalKb);
        }
    }
    kill(child, SIGTERM);
    waitpid(child, nullptr, 0);
    std::printf("exit %.1f\n", nowMs() - dStartMs);
    XCloseDisplay(pDisplay);
    return iStatus;
}
