#pragma once

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <grp.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

/// Runs what must not happen to the test itself (giving up rights, dying) in a process of its own, and
/// answers the text that it returns. "died" when it returned none.
inline std::string inChild(const std::function<std::string()>& action) {
    int ends[2];
    if (::pipe(ends) != 0) return "no pipe";
    const pid_t child = ::fork();
    if (child == 0) {
        const std::string text = action() + '.';
        ::_exit(::write(ends[1], text.data(), text.size()) < 0);
    }
    ::close(ends[1]);
    std::string text;
    char buffer[4096];
    for (ssize_t count; (count = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(count));
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    if (text.empty()) return "died";
    text.pop_back();
    return text;
}

constexpr unsigned kNobody = 65534;

/// Makes the process one of a user without rights, if it has them.
inline bool becomeNobody() {
    if (::geteuid() != 0) return true;
    return ::setgroups(0, nullptr) == 0 && ::setresgid(kNobody, kNobody, kNobody) == 0 &&
           ::setresuid(kNobody, kNobody, kNobody) == 0;
}

/// Makes system calls of the process fail for the rest of its life.
inline bool makeFail(const std::vector<long>& calls, int error) {
    std::vector<sock_filter> program{BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (const long call : calls) {
        program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<__u32>(call), 0, 1));
        program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<__u32>(error)));
    }
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    const sock_fprog whole{static_cast<unsigned short>(program.size()), program.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &whole) == 0;
}

/// Makes the file systems unable to hold files without a name.
inline bool makeNamelessFilesFail() {
    constexpr __u32 bit = O_TMPFILE & ~O_DIRECTORY;
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),
        BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, bit, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EOPNOTSUPP),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog whole{sizeof program / sizeof *program, program};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &whole) == 0;
}

/// A process that runs an action and stands still behind each of its system calls.
class SteppedChild {
  public:
    explicit SteppedChild(const std::function<int()>& action) {
        child_ = ::fork();
        if (child_ == 0) {
            if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(kUntraceable);
            ::raise(SIGSTOP);
            ::_exit(action());
        }
        wait_();
        if (alive_) ::ptrace(PTRACE_SETOPTIONS, child_, nullptr, PTRACE_O_EXITKILL);
    }
    ~SteppedChild() { kill(); }
    SteppedChild(const SteppedChild&) = delete;
    SteppedChild& operator=(const SteppedChild&) = delete;

    /// To the next stop; false when the action has ended.
    bool step() {
        // The calls are stopped at both ends.
        for (int i = 0; alive_ && i < 2; ++i) {
            if (::ptrace(PTRACE_SYSCALL, child_, nullptr, nullptr) != 0) return false;
            wait_();
        }
        return alive_;
    }
    void kill() {
        if (!alive_) return;
        ::kill(child_, SIGKILL);
        while (alive_) wait_();
    }
    /// What the action returned; -1 when it was killed.
    int result() const { return result_; }
    bool untraceable() const { return result_ == kUntraceable; }

  private:
    static constexpr int kUntraceable = 77;

    void wait_() {
        int status = 0;
        if (::waitpid(child_, &status, 0) != child_ || WIFSIGNALED(status)) alive_ = false;
        if (WIFEXITED(status)) {
            alive_ = false;
            result_ = WEXITSTATUS(status);
        }
    }

    pid_t child_ = -1;
    bool alive_ = true;
    int result_ = -1;
};
