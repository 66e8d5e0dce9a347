// The command line's writes: one writer at a time, files that are no workbooks, workbooks too big
// to hold, and saves killed halfway. Each refusal is one line and exit status 2, and the workbook
// on disk stays as it was.
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <set>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "cli.h"
#include "xlsx/package.h"

extern char** environ;

using namespace clitest;

namespace {

// plotsmith started without waiting for it; what it prints goes to `log`.
pid_t Start(const std::vector<std::string>& args, const ts::fs::path& log) {
    std::vector<std::string> argv{(ts::fs::path(PLOTSMITH_BINARY_DIR) / "plotsmith").string()};
    argv.insert(argv.end(), args.begin(), args.end());
    std::vector<char*> cargv;
    for (auto& a : argv) cargv.push_back(a.data());
    cargv.push_back(nullptr);
    posix_spawn_file_actions_t io;
    posix_spawn_file_actions_init(&io);
    posix_spawn_file_actions_addopen(&io, 1, log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_adddup2(&io, 1, 2);
    pid_t pid = -1;
    if (posix_spawn(&pid, cargv[0], &io, nullptr, cargv.data(), environ) != 0) pid = -1;
    posix_spawn_file_actions_destroy(&io);
    return pid;
}

int ExitStatus(int status) { return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status); }

// Its exit status; a run stuck for a minute is killed and answers -1.
int Finish(pid_t pid) {
    int status = 0;
    for (int i = 0; i < 6000; ++i) {
        if (waitpid(pid, &status, WNOHANG) == pid) return ExitStatus(status);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    kill(pid, SIGKILL);
    waitpid(pid, &status, 0);
    return -1;
}

// A workbook's part of its own, added through the package.
void AddPart(const ts::fs::path& book, const std::string& part, std::string bytes) {
    auto pkg = xlsx::Package::Open(book.string());
    pkg->Put(part, std::move(bytes), "application/octet-stream");
    pkg->Save(book.string());
}

// Temporary files of saves beside the workbook.
std::set<std::string> Temporaries(const ts::fs::path& book) {
    std::set<std::string> out;
    std::string prefix = "." + book.filename().string() + ".";
    for (auto& e : ts::fs::directory_iterator(book.parent_path()))
        if (e.path().filename().string().rfind(prefix, 0) == 0) out.insert(e.path().filename().string());
    return out;
}

// A command that never hangs: a run stuck for long fails with status 124.
ts::CommandResult Bounded(const std::string& args) { return ts::Run("timeout 60 " + Plotsmith(args)); }

TEST(Writers, OnlyRegularFilesAreOpenedAndNothingWaitsForAPipe) {
    auto dir = ts::ScratchDir("writers-files");
    auto fifo = dir / "pipe.xlsx";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    for (std::string command : {"list", "refresh", "--wait refresh"}) {
        auto r = Bounded(command + " " + Q(fifo));
        EXPECT_EQ(r.status, 2) << command;
        EXPECT_EQ(r.output, "plotsmith: cannot open '" + fifo.string() + "': it is a pipe, not a file\n") << command;
    }
    auto device = Bounded("export /dev/null");
    EXPECT_EQ(device.status, 2);
    EXPECT_EQ(device.output, "plotsmith: cannot open '/dev/null': it is a device, not a file\n");
    auto folder = Bounded("refresh-table " + Q(dir) + " Data1");
    EXPECT_EQ(folder.status, 2);
    EXPECT_EQ(folder.output, "plotsmith: cannot open '" + dir.string() + "': it is a folder\n");
    EXPECT_TRUE(ts::fs::is_fifo(fifo));
}

TEST(Writers, WorkbooksBeyondTheInflationCapOrMemoryAreRefusedInOneLine) {
    auto book = SalesBook("writers-cap");
    AddPart(book, "xl/media/zeros.bin", std::string(3 << 20, '\0'));
    const std::string before = Slurp(book);
    const std::string refused =
        "plotsmith: cannot open '" + book.string() + "': it inflates to more than the limit of 2 MiB\n";
    for (std::string args : {"--max-inflated-size 2 refresh " + Q(book), "list " + Q(book) + " --max-inflated-size 2"}) {
        auto r = Bounded(args);
        EXPECT_EQ(r.status, 2) << args;
        EXPECT_EQ(r.output, refused) << args;
    }
    EXPECT_EQ(Slurp(book), before);
    EXPECT_EQ(Bounded("--max-inflated-size 0 list " + Q(book)).status, 2);
    auto roomy = Bounded("--max-inflated-size 8 refresh " + Q(book));
    EXPECT_EQ(roomy.status, 0) << roomy.output;

    // A part bigger than the memory the process may take: one line, never an abort.
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "AddressSanitizer reserves more address space than the limit allows";
#else
    auto big = SalesBook("writers-memory");
    AddPart(big, "xl/media/zeros.bin", std::string(size_t(256) << 20, '\0'));
    const std::string bigBefore = Slurp(big);
    const std::string limit = "ulimit -v 200000; ";
    auto control = ts::Run(limit + Plotsmith("list " + Q(Example("sales.xlsx"))));
    ASSERT_EQ(control.status, 0) << "plotsmith doesn't start within the memory limit: " << control.output;
    auto r = ts::Run(limit + Plotsmith("--max-inflated-size 1024 refresh " + Q(big)));
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.output, "plotsmith: out of memory working on '" + big.string() + "'\n");
    EXPECT_EQ(Slurp(big), bigBefore);
#endif
}

TEST(Writers, ASecondWriterIsRefusedOrWaitsItsTurn) {
    auto book = SalesBook("writers-lock");
    const std::string before = Slurp(book);
    // Close-on-exec: a copy of the descriptor in a child would hold the lock on after close.
    int fd = open(book.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(flock(fd, LOCK_EX), 0);
    const std::string busy =
        "plotsmith: cannot open '" + book.string() + "': another plotsmith (or program) is writing it\n";
    auto column = Q(Example("column-revenue-by-region.xml"));
    for (std::string args : {"refresh " + Q(book), "refresh-table " + Q(book) + " Data1",
                             "rename-columns " + Q(book) + " Data1 Share=Part",
                             "add " + Q(book) + " " + column + " --sheet Sales",
                             "define " + Q(book) + " --table Data1 --type pie", "wizard " + Q(book)}) {
        auto r = Bounded(args);
        EXPECT_EQ(r.status, 2) << args;
        EXPECT_EQ(r.output, busy) << args;
    }
    EXPECT_EQ(Slurp(book), before);

    // Readers take no writer lock: beside a program reading the workbook, list reads too.
    ASSERT_EQ(flock(fd, LOCK_SH), 0);
    EXPECT_EQ(Bounded("list " + Q(book)).status, 0);
    EXPECT_EQ(Bounded("export " + Q(book)).status, 0);
    EXPECT_EQ(Bounded("refresh " + Q(book)).output, busy);
    ASSERT_EQ(flock(fd, LOCK_EX), 0);

    // With --wait the writer waits, and goes on once the lock is released.
    auto log = book.parent_path() / "log.txt";
    pid_t waiting = Start({"refresh", book.string(), "--wait"}, log);
    ASSERT_GT(waiting, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    int status = 0;
    EXPECT_EQ(waitpid(waiting, &status, WNOHANG), 0) << "did not wait: " << Slurp(log);
    EXPECT_EQ(Slurp(book), before);
    close(fd);
    EXPECT_EQ(Finish(waiting), 0) << Slurp(log);
    EXPECT_NE(Slurp(book), before);
    EXPECT_EQ(Bounded("list " + Q(book)).status, 0);
}

// Saves killed at random moments, some while their temporary file is being written: the workbook
// is each time the one before, and the next save removes what the killed ones left.
TEST(Writers, SavesKilledHalfwayLeaveTheWorkbookWholeAndNothingBehind) {
    auto book = SalesBook("writers-killed");
    auto dir = book.parent_path();
    auto column = Q(Example("column-revenue-by-region.xml"));
    ASSERT_EQ(ts::Run(Plotsmith("add " + Q(book) + " " + column + " --sheet Sales")).status, 0);
    // Noise doesn't deflate, so each save takes a while.
    std::mt19937 random(std::random_device{}());
    std::string noise(8 << 20, '\0');
    for (auto& c : noise) c = static_cast<char>(random());
    AddPart(book, "xl/media/noise.bin", std::move(noise));
    auto started = std::chrono::steady_clock::now();
    ASSERT_EQ(ts::Run(Plotsmith("refresh " + Q(book))).status, 0);
    auto runTime = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - started);
    const std::string original = Slurp(book);
    ASSERT_EQ(ts::Run(Plotsmith("refresh " + Q(book))).status, 0);
    ASSERT_EQ(Slurp(book), original) << "a refresh of a refreshed workbook writes the same bytes";

    int leftBehind = 0;
    for (int i = 0; i < 16; ++i) {
        auto known = Temporaries(book);
        pid_t pid = Start({"refresh", book.string()}, dir.parent_path() / "killed-log.txt");
        ASSERT_GT(pid, 0);
        int status = 0;
        bool exited = false;
        if (i % 2 == 0) {
            // Anywhere in the run.
            std::this_thread::sleep_for(std::chrono::microseconds(random() % (runTime.count() + 1)));
        } else {
            // Once the temporary file is there.
            auto isNew = [&] {
                for (auto& name : Temporaries(book))
                    if (!known.count(name)) return true;
                return false;
            };
            while (!isNew() && !(exited = waitpid(pid, &status, WNOHANG) == pid))
                std::this_thread::sleep_for(std::chrono::microseconds(100));
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 2000));
        }
        if (!exited) {
            kill(pid, SIGKILL);
            waitpid(pid, &status, 0);
        }
        EXPECT_EQ(Slurp(book), original) << "run " << i << " ended with " << ExitStatus(status);
        for (auto& name : Temporaries(book)) leftBehind += !known.count(name);
    }
    EXPECT_GT(leftBehind, 0) << "no kill came while a temporary file was written";

    auto next = ts::Run(Plotsmith("refresh " + Q(book)));
    EXPECT_EQ(next.status, 0) << next.output;
    EXPECT_EQ(Temporaries(book), std::set<std::string>{});
    EXPECT_EQ(Slurp(book), original);
    EXPECT_TRUE(Has(ts::Run(Plotsmith("list " + Q(book))).output, "Charts (1):"));
}

}  // namespace
