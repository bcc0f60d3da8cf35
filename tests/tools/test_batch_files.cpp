// The batch tool on files that are not what they claim: tiny files declaring huge
// pictures in each format, FIFOs, devices, folders, vanished files, a helper that dies,
// a run that is killed. Each is one line of error, quickly, in little memory, with
// nothing left behind.
#include "imagefile/imagefile.h"
#include "pixel/region.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

using namespace ostrivex;
namespace fs = std::filesystem;

namespace {

using Bytes = std::vector<uint8_t>;

std::string dataFile(const std::string& name) {
    return std::string(OSTRIVEX_TEST_DATA) + "/formats/" + name;
}

Bytes readBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void writeBytes(const std::string& path, const Bytes& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

void put(Bytes& b, size_t at, uint32_t v, int n, bool big) {
    for (int i = 0; i < n; ++i)
        b[at + size_t(i)] = uint8_t(v >> (8 * (big ? n - 1 - i : i)));
}

// The CRC of a PNG chunk (type and data).
uint32_t crc32(const uint8_t* p, size_t n) {
    uint32_t c = 0xFFFFFFFFu;
    for (size_t i = 0; i < n; ++i) {
        c ^= p[i];
        for (int k = 0; k < 8; ++k)
            c = c & 1 ? 0xEDB88320u ^ (c >> 1) : c >> 1;
    }
    return ~c;
}

// Sets the first IHDR of a PNG-like file (PNG, MNG) to w x h, CRC included.
void patchIhdr(Bytes& b, uint32_t w, uint32_t h) {
    for (size_t at = 8; at + 12 <= b.size();) {
        const uint32_t len = uint32_t(b[at]) << 24 | b[at + 1] << 16 | b[at + 2] << 8 | b[at + 3];
        if (std::string(b.begin() + long(at) + 4, b.begin() + long(at) + 8) == "IHDR") {
            put(b, at + 8, w, 4, true);
            put(b, at + 12, h, 4, true);
            put(b, at + 8 + len, crc32(&b[at + 4], len + 4), 4, true);
            return;
        }
        at += 12 + len;
    }
    ADD_FAILURE() << "no IHDR";
}

size_t find(const Bytes& b, const std::string& text, size_t from = 0) {
    const Bytes what(text.begin(), text.end());
    auto it = std::search(b.begin() + long(from), b.end(), what.begin(), what.end());
    return it == b.end() ? std::string::npos : size_t(it - b.begin());
}

struct Outcome {
    int status = -1;
    std::string err;
    double seconds = 0;
    long maxRssKb = 0;
};

class BatchFiles : public ::testing::Test {
  protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() /
               ("ostrivex-batch-files-" + std::to_string(getpid()) + "-" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir_);
        fs::create_directories(dir_ / "tmp");
        fs::create_directories(dir_ / "run");
    }
    void TearDown() override { fs::remove_all(dir_); }
    std::string path(const std::string& name) const { return (dir_ / name).string(); }

    // Runs the installed tool with its own temporary folders, measuring its time and the
    // largest memory it or its helper held. `extraEnv` is added to the environment.
    // With `killAtHelper`, the run is killed as soon as it has started its helper, whose
    // process id is then returned in `helperSeen`.
    Outcome batch(const std::vector<std::string>& args, const std::vector<std::string>& extraEnv = {},
              bool killAtHelper = false, pid_t* helperSeen = nullptr) {
        std::vector<std::string> env = {"TMPDIR=" + path("tmp"), "XDG_RUNTIME_DIR=" + path("run")};
        for (char** e = environ; *e; ++e) {
            const std::string v = *e;
            if (v.rfind("TMPDIR=", 0) != 0 && v.rfind("XDG_RUNTIME_DIR=", 0) != 0) env.push_back(v);
        }
        env.insert(env.end(), extraEnv.begin(), extraEnv.end());
        std::vector<char*> envp, argv;
        for (auto& v : env)
            envp.push_back(v.data());
        envp.push_back(nullptr);
        std::string exe = OSTRIVEX_BATCH_EXE;
        argv.push_back(exe.data());
        std::vector<std::string> copy = args;
        for (auto& a : copy)
            argv.push_back(a.data());
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        const std::string errFile = path("stderr");
        posix_spawn_file_actions_addopen(&actions, 2, errFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
        const auto start = std::chrono::steady_clock::now();
        pid_t pid = 0;
        Outcome r;
        if (posix_spawn(&pid, exe.c_str(), &actions, nullptr, argv.data(), envp.data()) != 0) return r;
        posix_spawn_file_actions_destroy(&actions);
        if (killAtHelper) {
            pid_t child = 0;
            for (int i = 0; i < 2000 && child == 0; ++i) {
                std::ifstream children("/proc/" + std::to_string(pid) + "/task/" +
                                       std::to_string(pid) + "/children");
                if (!(children >> child)) std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
            if (helperSeen) *helperSeen = child;
            kill(pid, SIGKILL);
        }
        int status = 0;
        rusage usage{};
        wait4(pid, &status, 0, &usage);
        r.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        r.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
        r.maxRssKb = usage.ru_maxrss;
        const Bytes e = readBytes(errFile);
        r.err.assign(e.begin(), e.end());
        return r;
    }

    // Nothing may stay in the run's temporary folders.
    void expectNoLeftovers() {
        EXPECT_TRUE(fs::is_empty(path("tmp")));
        EXPECT_TRUE(fs::is_empty(path("run")));
    }

    fs::path dir_;
};

// Writes `name` from a file of the right format with its declared size patched.
std::string makeBomb(const std::string& dir, const std::string& name, Bytes bytes) {
    const std::string p = dir + "/" + name;
    writeBytes(p, bytes);
    return p;
}

TEST_F(BatchFiles, TinyFilesDeclaringHugePicturesAreRefusedAtOnce) {
    const std::string d = dir_.string();
    const std::string src = path("src.ppm");
    writeBytes(src, {'P', '6', '\n', '4', ' ', '3', '\n', '2', '5', '5', '\n'});
    {
        Bytes px(36, 90);
        Bytes b = readBytes(src);
        b.insert(b.end(), px.begin(), px.end());
        writeBytes(src, b);
    }
    auto im = [&](const std::string& target) {
        const std::string out = path("made." + target.substr(0, target.find(':')));
        EXPECT_EQ(std::system(("/usr/bin/convert " + src + " " + target + out + " 2>/dev/null").c_str()), 0);
        return readBytes(out);
    };
    constexpr uint32_t N = 30000;
    std::vector<std::string> bombs;
    {
        Bytes b = im("bmp3:");
        put(b, 18, N, 4, false), put(b, 22, N, 4, false);
        bombs.push_back(makeBomb(d, "b.bmp", b));
        bombs.push_back(makeBomb(d, "b.dib", b));
    }
    {
        Bytes b = im("jpeg:");
        const size_t sof = find(b, "\xFF\xC0");
        ASSERT_NE(sof, std::string::npos);
        put(b, sof + 5, N, 2, true), put(b, sof + 7, N, 2, true);
        b.resize(599);
        bombs.push_back(makeBomb(d, "b.jpg", b));
    }
    {
        Bytes b = im("png24:");
        patchIhdr(b, N, N);
        bombs.push_back(makeBomb(d, "b.png", b));
    }
    {
        Bytes b = im("gif:");
        put(b, 6, N, 2, false), put(b, 8, N, 2, false);
        bombs.push_back(makeBomb(d, "b.gif", b));
    }
    {
        // 138 bytes: an uncompressed grey strip of 30000 x 30000 that the file lacks.
        Bytes b(138, 0);
        b[0] = 'I', b[1] = 'I', b[2] = 42, b[8] = 9;
        const uint32_t tags[9][3] = {{256, 4, N},   {257, 4, N},   {258, 3, 8},
                                     {259, 3, 1},   {262, 3, 1},   {273, 4, 130},
                                     {277, 3, 1},   {278, 4, N},   {279, 4, N * N}};
        put(b, 8, 9, 2, false);
        for (int i = 0; i < 9; ++i) {
            const size_t at = 10 + size_t(i) * 12;
            put(b, at, tags[i][0], 2, false);
            put(b, at + 2, tags[i][1], 2, false);
            put(b, at + 4, 1, 4, false);
            put(b, at + 8, tags[i][2], tags[i][1] == 3 ? 2 : 4, false);
        }
        bombs.push_back(makeBomb(d, "b.tif", b));
    }
    {
        Bytes b = im("tga:");
        put(b, 12, N, 2, false), put(b, 14, N, 2, false);
        bombs.push_back(makeBomb(d, "b.tga", b));
    }
    {
        Bytes b = im("pcx:");
        put(b, 8, N - 1, 2, false), put(b, 10, N - 1, 2, false);
        bombs.push_back(makeBomb(d, "b.pcx", b));
    }
    {
        Bytes b = im("psd:");
        put(b, 14, N, 4, true), put(b, 18, N, 4, true);
        bombs.push_back(makeBomb(d, "b.psd", b));
    }
    {
        Bytes b = im("sun:");
        put(b, 4, N, 4, true), put(b, 8, N, 4, true);
        bombs.push_back(makeBomb(d, "b.ras", b));
    }
    {
        Bytes b = im("sgi:");
        put(b, 6, N, 2, true), put(b, 8, N, 2, true);
        bombs.push_back(makeBomb(d, "b.sgi", b));
    }
    for (const char* head : {"P6\n30000 30000\n255\n", "P5\n30000 30000\n65535\n", "P4\n30000 30000\n"}) {
        const std::string h = head;
        Bytes b(h.begin(), h.end());
        b.resize(b.size() + 64, 7);
        bombs.push_back(makeBomb(d, std::string("b") + head[1] + (h[1] == '6' ? ".ppm" : h[1] == '5' ? ".pgm" : ".pbm"), b));
    }
    {
        const std::string x = "/* XPM */\nstatic char *b[] = {\n\"30000 30000 2 1\",\n\"a c #000000\",\n\"b c #FFFFFF\",\n\"abab\"\n};\n";
        bombs.push_back(makeBomb(d, "b.xpm", Bytes(x.begin(), x.end())));
    }
    {
        // 30000 in seven-bit groups: 1, 106, 48.
        bombs.push_back(makeBomb(d, "b.wbmp", {0, 0, 0x81, 0xEA, 0x30, 0x81, 0xEA, 0x30, 0xFF, 0x00}));
    }
    {
        Bytes b = readBytes(dataFile("rose.dds"));
        put(b, 12, N, 4, false), put(b, 16, N, 4, false);
        bombs.push_back(makeBomb(d, "b.dds", b));
        b = readBytes(dataFile("rose.pix"));
        put(b, 0, N, 2, true), put(b, 2, N, 2, true);
        bombs.push_back(makeBomb(d, "b.pix", b));
        b = readBytes(dataFile("small.cut"));
        put(b, 0, N, 2, false), put(b, 2, N, 2, false);
        bombs.push_back(makeBomb(d, "b.cut", b));
        b = readBytes(dataFile("small.wal"));
        put(b, 32, N, 4, false), put(b, 36, N, 4, false);
        bombs.push_back(makeBomb(d, "b.wal", b));
        for (const char* iff : {"small.iff", "small.lbm"}) {
            b = readBytes(dataFile(iff));
            const size_t bmhd = find(b, "BMHD");
            ASSERT_NE(bmhd, std::string::npos);
            put(b, bmhd + 8, N, 2, true), put(b, bmhd + 10, N, 2, true);
            bombs.push_back(makeBomb(d, std::string("b.") + fs::path(iff).extension().string().substr(1), b));
        }
        b = readBytes(dataFile("small.mng"));
        patchIhdr(b, N, N);
        bombs.push_back(makeBomb(d, "b.mng", b));
        Bytes dcx = im("dcx:");
        const uint32_t page = dcx[4] | dcx[5] << 8 | dcx[6] << 16 | uint32_t(dcx[7]) << 24;
        put(dcx, page + 8, N - 1, 2, false), put(dcx, page + 10, N - 1, 2, false);
        bombs.push_back(makeBomb(d, "b.dcx", dcx));
    }

    for (const std::string& bomb : bombs) {
        SCOPED_TRACE(bomb);
        const Outcome r = batch({bomb, path("out.ppm")});
        EXPECT_EQ(r.status, 2);
        EXPECT_EQ(r.err, "ostrivex-batch: " + bomb + ": Unexpected error loading image\n");
        // Far below the 18 seconds and several gigabytes such files took.
        EXPECT_LT(r.seconds, 3.0);
        EXPECT_LT(r.maxRssKb, 200 * 1024);
        EXPECT_FALSE(fs::exists(path("out.ppm")));
    }
    expectNoLeftovers();
}

TEST_F(BatchFiles, APictureOverTheBudgetIsRefusedFromItsHeader) {
    // 1000 x 1000 needs about 4 MB of buffer: refused under a 3 MB budget, loaded under 5.
    const std::string big = path("big.png");
    ASSERT_EQ(std::system(("/usr/bin/convert -size 1000x1000 gradient:red-blue " + big).c_str()), 0);
    Outcome r = batch({big, path("o.ppm")}, {"OSTRIVEX_MAX_IMAGE_MB=3"});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.err, "ostrivex-batch: " + big + ": Unexpected error loading image\n");
    r = batch({big, path("o.ppm")}, {"OSTRIVEX_MAX_IMAGE_MB=5"});
    EXPECT_EQ(r.status, 0) << r.err;
    // The same limit holds in the helper.
    const std::string tga = path("big.tga");
    ASSERT_EQ(std::system(("/usr/bin/convert " + big + " " + tga).c_str()), 0);
    EXPECT_EQ(batch({tga, path("o.ppm")}, {"OSTRIVEX_MAX_IMAGE_MB=3"}).status, 2);
    EXPECT_EQ(batch({tga, path("o.ppm")}, {"OSTRIVEX_MAX_IMAGE_MB=5"}).status, 0);
}

TEST_F(BatchFiles, OnlyRegularFilesAreRead) {
    ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
    fs::create_directories(path("folder.png"));
    std::vector<std::string> bad = {path("folder.png"), path("vanished.png")};
    for (const char* ext : {"gif", "dib", "koa", "pcd", "png", "jpg", "ppm", "bmp", "xpm", "tga", "wmf", "sgi"}) {
        fs::create_symlink(path("fifo"), path(std::string("x.") + ext));
        fs::create_symlink("/dev/zero", path(std::string("z.") + ext));
        bad.push_back(path(std::string("x.") + ext));
        bad.push_back(path(std::string("z.") + ext));
    }
    for (const std::string& input : bad) {
        SCOPED_TRACE(input);
        const Outcome r = batch({input, path("o.ppm")});
        EXPECT_EQ(r.status, 2);
        EXPECT_EQ(r.err, "ostrivex-batch: " + input + ": Unexpected error loading image\n");
        EXPECT_LT(r.seconds, 3.0);
    }
    // The same in the program's own calls.
    EXPECT_FALSE(LoadImageFile(path("x.png"), "png").ok);
    EXPECT_FALSE(LoadPictureFile(path("x.gif"), "gif").ok);
    EXPECT_FALSE(LoadPictureFile(path("z.dib"), "dib").ok);
    // A file the user may not read.
    if (geteuid() != 0) {
        writeBytes(path("locked.ppm"), {'P', '6', '\n', '1', ' ', '1', '\n', '2', '5', '5', '\n', 1, 2, 3});
        chmod(path("locked.ppm").c_str(), 0);
        EXPECT_EQ(batch({path("locked.ppm"), path("o.ppm")}).status, 2);
    }

    // Selection files the same way, and damaged ones say so.
    const std::string in = path("in.ppm");
    writeBytes(in, {'P', '6', '\n', '1', ' ', '1', '\n', '2', '5', '5', '\n', 1, 2, 3});
    const std::vector<std::pair<std::string, std::string>> selections = {
        {path("fifo"), "cannot read selection file '" + path("fifo") + "'"},
        {"/dev/zero", "cannot read selection file '/dev/zero'"},
        {path("folder.png"), "cannot read selection file '" + path("folder.png") + "'"},
        {path("empty.osf"), "selection file '" + path("empty.osf") + "' is damaged"},
        {path("odd.osf"), "selection file '" + path("odd.osf") + "' is damaged"},
        {path("outside.osf"), "the selection holds no pixel of the picture (1 x 1)"},
    };
    writeBytes(path("empty.osf"), {});
    writeBytes(path("odd.osf"), Bytes(33, 1));
    const std::vector<int32_t> outside = Region::rect(5, 5, 6, 6).dump();
    writeBytes(path("outside.osf"), Bytes(reinterpret_cast<const uint8_t*>(outside.data()),
                                          reinterpret_cast<const uint8_t*>(outside.data() + outside.size())));
    for (const auto& [file, message] : selections) {
        SCOPED_TRACE(file);
        const Outcome r = batch({in, path("o.ppm"), "--select", "osf:" + file, "INVERT"});
        EXPECT_EQ(r.status, 2);
        EXPECT_EQ(r.err, "ostrivex-batch: " + message + "\n");
        EXPECT_LT(r.seconds, 3.0);
    }
    expectNoLeftovers();
}

TEST_F(BatchFiles, LargeSelectionFilesLoadInLinearTime) {
    // 256 KB and 4 MB of one-pixel rectangles, 256 to a band: both load in little memory
    // (the general union took 4.5 s and 2 GB for the small one and aborted on 512 KB;
    // bench_files measures the time).
    const std::string in = path("in.pgm");
    std::string head = "P5\n512 512\n255\n";
    Bytes px(head.begin(), head.end());
    px.resize(px.size() + 512 * 512, 100);
    writeBytes(in, px);
    auto selection = [&](const std::string& name, int rects) {
        std::vector<int32_t> e = {32, 1, rects, rects * 16, 0, 0, 512, 512};
        for (int i = 0; i < rects; ++i) {
            const int y = i / 256, x = (i % 256) * 2;
            e.insert(e.end(), {x, y, x + 1, y + 1});
        }
        writeBytes(path(name), Bytes(reinterpret_cast<const uint8_t*>(e.data()),
                                     reinterpret_cast<const uint8_t*>(e.data() + e.size())));
        return path(name);
    };
    const std::string small = selection("small.osf", 16384), large = selection("large.osf", 262144);
    const Outcome a = batch({in, path("a.pgm"), "--select", "osf:" + small, "INVERT"});
    const Outcome b = batch({in, path("b.pgm"), "--select", "osf:" + large, "INVERT"});
    ASSERT_EQ(a.status, 0) << a.err;
    ASSERT_EQ(b.status, 0) << b.err;
    EXPECT_LT(b.maxRssKb, 300 * 1024);
    // Every second pixel of the first 64 rows (of 512 wide) is inverted by the small one,
    // of every row by the large one.
    ImageFileResult r = LoadImageFile(path("a.pgm"), "pgm");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.pixels(0, 0, 0), 155);
    EXPECT_EQ(r.pixels(0, 1, 0), 100);
    EXPECT_EQ(r.pixels(0, 510, 63), 155);
    EXPECT_EQ(r.pixels(0, 0, 64), 100);
    r = LoadImageFile(path("b.pgm"), "pgm");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.pixels(0, 0, 511), 155);
    EXPECT_EQ(r.pixels(0, 511, 511), 100);
}

TEST_F(BatchFiles, AKilledHelperOrRunLeavesNothingBehind) {
    const std::string xpm = path("p.xpm");
    ASSERT_EQ(std::system(("/usr/bin/convert -size 4x3 xc:red " + xpm).c_str()), 0);
    // A helper that dies at once: one line of error, no folder left.
    const std::string dying = path("dying-helper");
    writeBytes(dying, Bytes{'#', '!', '/', 'b', 'i', 'n', '/', 's', 'h', '\n', 'k', 'i', 'l', 'l',
                            ' ', '-', '9', ' ', '$', '$', '\n'});
    chmod(dying.c_str(), 0700);
    Outcome r = batch({xpm, path("o.png")}, {"OSTRIVEX_DEVIL_HELPER=" + dying});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.err, "ostrivex-batch: " + xpm + ": Unexpected error loading image\n");
    expectNoLeftovers();

    // A run killed while its helper decodes a large picture: the helper dies with it, and
    // no folder or file is left.
    const std::string big = path("big.tga");
    ASSERT_EQ(std::system(("/usr/bin/convert -size 6000x4000 xc:gray -compress RLE " + big).c_str()), 0);
    pid_t helper = 0;
    r = batch({big, path("o.png")}, {}, true, &helper);
    EXPECT_EQ(r.status, -SIGKILL);
    ASSERT_GT(helper, 0);
    bool gone = false;
    for (int i = 0; i < 200 && !gone; ++i) {
        // Gone, or a zombie nobody waits for any more.
        std::ifstream stat("/proc/" + std::to_string(helper) + "/stat");
        std::string pidText, name, state;
        gone = !(stat >> pidText >> name >> state) || state == "Z";
        if (!gone) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    EXPECT_TRUE(gone);
    expectNoLeftovers();
    EXPECT_FALSE(fs::exists(path("o.png")));
}

} // namespace
