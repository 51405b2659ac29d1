// Every uri a document can name, aimed at a file beside the document's
// folder: refused, and the file is never opened (inotify watches it).
#include <gtest/gtest.h>

#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "sorvane/arf/Arf.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/meshio/meshio.h"

using namespace sorvane;
namespace fs = std::filesystem;

namespace {

struct Folder {
    fs::path base;
    fs::path doc;
    fs::path sentinel;
    Folder() {
        base = fs::temp_directory_path() / ("talvex-uri-" + std::to_string(::getpid()) + "-" +
                                            ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(base);
        doc = base / "doc";
        fs::create_directories(doc / "sub");
        sentinel = base / "sentinel.bin";
        write(sentinel, "SENTINEL");
        write(doc / "inside.bin", "INSIDE!!");
        fs::create_symlink("../sentinel.bin", doc / "link.bin");
        fs::create_symlink(sentinel, doc / "abslink.bin");
        fs::create_symlink("..", doc / "up");
        fs::create_symlink("inside.bin", doc / "inlink.bin");
    }
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(base, ignored);
    }
    static void write(const fs::path& path, const std::string& text) {
        std::ofstream out(path, std::ios::binary);
        out << text;
    }
};

// Counts opens and reads of one file.
class OpenWatch {
public:
    explicit OpenWatch(const fs::path& file) {
        fd_ = inotify_init1(IN_NONBLOCK);
        if (fd_ >= 0) inotify_add_watch(fd_, file.c_str(), IN_OPEN | IN_ACCESS);
    }
    ~OpenWatch() {
        if (fd_ >= 0) ::close(fd_);
    }
    bool ok() const { return fd_ >= 0; }
    int events() {
        int count = 0;
        alignas(inotify_event) char buffer[4096];
        for (;;) {
            const ssize_t got = ::read(fd_, buffer, sizeof buffer);
            if (got <= 0) break;
            for (ssize_t at = 0; at < got;) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
                ++count;
                at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            }
        }
        return count;
    }

private:
    int fd_ = -1;
};

std::string jsonString(const std::string& text) {
    std::string out = "\"";
    for (char c : text) {
        if (c == '\\' || c == '"') out += '\\';
        out += c;
    }
    return out + "\"";
}

std::string failure(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::exception& e) {
        return e.what();
    }
    return "(no failure)";
}

bool refused(const std::string& text) {
    return text.find("leaves the") != std::string::npos || text.find("is absolute") != std::string::npos;
}

// The reads a document's uri leads to, each given the uri to try.
std::vector<std::pair<const char*, std::function<std::string(const std::string&)>>> readers(const Folder& f) {
    const fs::path doc = f.doc;
    return {
        {"glTF buffer",
         [doc](const std::string& uri) {
             Folder::write(doc / "a.gltf", "{\"asset\":{\"version\":\"2.0\"},\"buffers\":[{\"uri\":" + jsonString(uri) +
                                               ",\"byteLength\":8}]}");
             gltf2::Gltf gltf = gltf2::Gltf::load((doc / "a.gltf").string());
             return gltf.buffers.getByIndex(0).getString();
         }},
        {"glTF image",
         [doc](const std::string& uri) {
             Folder::write(doc / "i.gltf", "{\"asset\":{\"version\":\"2.0\"},\"images\":[{\"uri\":" + jsonString(uri) + "}]}");
             gltf2::Gltf gltf = gltf2::Gltf::load((doc / "i.gltf").string());
             gltf.images.getByIndex(0).getImage();
             return std::string("loaded");
         }},
        {"ARF payload",
         [doc](const std::string& uri) {
             Folder::write(doc / "a.arf", "{\"data\":[{\"type\":\"application/octet-stream\",\"uri\":" + jsonString(uri) +
                                              ",\"name\":\"\",\"id\":1}]}");
             arf::Arf arf = arf::Arf::load((doc / "a.arf").string(), true);
             return arf.data.get()[1].getString();
         }},
        {"glb payload",
         [doc](const std::string& uri) {
             Folder::write(doc / "g.arf", "{\"data\":[{\"type\":\"model/gltf-binary\",\"uri\":" + jsonString(uri) +
                                              ",\"name\":\"\",\"id\":1}]}");
             arf::Arf arf = arf::Arf::load((doc / "g.arf").string(), true);
             arf.data.get()[1].getGltf();
             return std::string("loaded");
         }},
        {"mtllib",
         [doc](const std::string& uri) {
             Folder::write(doc / "a.obj", "mtllib " + uri + "\nv 0 0 0\n");
             loadObj((doc / "a.obj").string());
             return std::string("loaded");
         }},
        {"map_Kd",
         [doc](const std::string& uri) {
             Folder::write(doc / "m.mtl", "newmtl x\nmap_Kd " + uri + "\n");
             Folder::write(doc / "b.obj", "mtllib m.mtl\nv 0 0 0\n");
             loadObj((doc / "b.obj").string());
             return std::string("loaded");
         }},
    };
}

} // namespace

TEST(DocumentUris, NoneReachesAFileOutsideTheFolder) {
    Folder f;
    OpenWatch watch(f.sentinel);
    ASSERT_TRUE(watch.ok());
    const std::vector<std::string> uris = {
        f.sentinel.string(), "../sentinel.bin", "..\\sentinel.bin", "sub/../../sentinel.bin",
        "sub\\..\\..\\sentinel.bin", "C:sentinel.bin", "C:\\sentinel.bin", "c:/sentinel.bin", "\\sentinel.bin",
        "link.bin", "abslink.bin", "up/sentinel.bin", "./up/sentinel.bin", "sub/../link.bin"};
    for (const auto& [what, read] : readers(f)) {
        for (const std::string& uri : uris) {
            const std::string text = failure([&] { read(uri); });
            EXPECT_TRUE(refused(text)) << what << " with '" << uri << "': " << text;
        }
    }
    EXPECT_EQ(watch.events(), 0) << "a file outside the document's folder was opened";
    // The watch does see an open.
    std::ifstream(f.sentinel).get();
    EXPECT_GT(watch.events(), 0);
}

TEST(DocumentUris, FilesAndLinksInsideTheFolderStillRead) {
    Folder f;
    auto all = readers(f);
    for (const char* uri : {"inside.bin", "inlink.bin", "./inside.bin"}) {
        EXPECT_EQ(all[0].second(uri), "INSIDE!!") << uri;
        EXPECT_EQ(all[2].second(uri), "INSIDE!!") << uri;
    }
    // A folder reached through a link is judged where it really is.
    fs::create_directories(f.base / "real");
    Folder::write(f.base / "real" / "p.bin", "REALREAL");
    Folder::write(f.base / "real" / "a.arf",
                  "{\"data\":[{\"type\":\"application/octet-stream\",\"uri\":\"p.bin\",\"name\":\"\",\"id\":1}]}");
    fs::create_symlink(f.base / "real", f.base / "alias");
    arf::Arf arf = arf::Arf::load((f.base / "alias" / "a.arf").string(), true);
    EXPECT_EQ(arf.data.get()[1].getString(), "REALREAL");
}
