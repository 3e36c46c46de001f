#include "tests/session/system_call_watch.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <linux/futex.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>

#ifndef PR_SET_SYSCALL_USER_DISPATCH
#define PR_SET_SYSCALL_USER_DISPATCH 59
#endif

namespace tolvenary::session::system_call_watch
{

namespace
{

constexpr char letThrough = 0;
constexpr char handOver = 1;

// Read by the kernel at each system call of the thread.
constinit thread_local volatile char selector = letThrough;
constinit thread_local Seen observer = nullptr;

#if defined(__x86_64__)

SystemCall kindOfFutex(long operation)
{
    switch (operation & FUTEX_CMD_MASK) {
    case FUTEX_LOCK_PI:
    case FUTEX_UNLOCK_PI:
    case FUTEX_TRYLOCK_PI:
    case 13: // FUTEX_LOCK_PI2, since Linux 5.14
        return SystemCall::contendedLock;
    case FUTEX_WAIT:
    case FUTEX_WAIT_BITSET:
        return SystemCall::wait;
    default:
        return SystemCall::other;
    }
}

SystemCall kindOf(long number, long secondArgument)
{
    constexpr std::array waits{SYS_nanosleep, SYS_clock_nanosleep, SYS_poll,        SYS_ppoll, SYS_select,
                               SYS_pselect6,  SYS_epoll_wait,      SYS_epoll_pwait, SYS_pause};
    if (number == SYS_futex)
        return kindOfFutex(secondArgument);
    return std::find(waits.begin(), waits.end(), number) != waits.end() ? SystemCall::wait : SystemCall::other;
}

// The call has not been made yet: with the registers as they are, one step back makes it.
void handedOver(int /*signal*/, siginfo_t * /*info*/, void *context)
{
    constexpr greg_t lengthOfTheInstruction = 2;
    selector = letThrough;
    auto &registers = static_cast<ucontext_t *>(context)->uc_mcontext.gregs;
    observer(kindOf(registers[REG_RAX], registers[REG_RSI]));
    registers[REG_RIP] -= lengthOfTheInstruction;
}

bool arm()
{
    struct sigaction action = {};
    action.sa_sigaction = handedOver;
    action.sa_flags = SA_SIGINFO;
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGSYS);
    constexpr unsigned long on = 1;
    return sigaction(SIGSYS, &action, nullptr) == 0 && pthread_sigmask(SIG_UNBLOCK, &signals, nullptr) == 0 &&
           prctl(PR_SET_SYSCALL_USER_DISPATCH, on, 0UL, 0UL, &selector) == 0;
}

#else

bool arm()
{
    return false;
}

#endif

} // namespace

bool begin(Seen seen)
{
    thread_local const bool isArmed = arm();
    if (!isArmed)
        return false;
    observer = seen;
    selector = handOver;
    return true;
}

void end()
{
    selector = letThrough;
}

} // namespace tolvenary::session::system_call_watch
