// JSON of every wrong form. Without the keys it is an altered file. If it is sealed again with the keys, the
// reader itself must refuse it.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/hostile/damage.h"
#include "tests/hostile/refusals.h"
#include "tests/hostile/sealing_again.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

struct Shape {
    std::string name;
    std::string text;
};

/// Texts that are not an object or not JSON.
std::vector<Shape> wrongEverywhere() {
    return {{"nothing", ""},
            {"a space", " "},
            {"null", "null"},
            {"a number", "1"},
            {"a large number", std::string(5000, '9')},
            {"a text", "\"text\""},
            {"a list", "[]"},
            {"an open object", "{"},
            {"an open text", "{\"a"},
            {"an open text after a backslash", "{\"a\\"},
            {"a comma too many", R"({"a":1,})"},
            {"two values", "{} {}"},
            {"a NUL", std::string("{}\0", 3)},
            {"a comment", "{/* */}"},
            {"single quotes", "{'a':1}"},
            {"NaN", R"({"a":NaN})"},
            {"an infinite number", R"({"a":1e999})"},
            {"a half of a pair", R"({"a":"\ud800"})"},
            {"bad UTF-8 in a value", "{\"a\":\"\xff\"}"},
            {"bad UTF-8 in a name", "{\"\xc0\xaf\":1}"},
            {"a surrogate in UTF-8", "{\"a\":\"\xed\xa0\x80\"}"},
            {"UTF-16", std::string("\xff\xfe{\0}\0", 6)},
            {"lists, very deep", deep("[", "]", "")},
            {"lists, very deep and open", deep("[", "", "")},
            {"objects, very deep", deep("{\"a\":", "}", "1")}};
}

TEST(HostileJsonTest, manifestOfAWrongShapeWithoutKeysIsRefused) {
    std::vector<Case> cases;
    for (const Shape& shape : wrongEverywhere()) {
        cases.push_back({shape.name,
                         [shape](const fs::path& package) {
                             writeFile(package / "manifest.json", shape.text);
                             return true;
                         },
                         kAltered, "manifest.json"});
    }
    expectRefusals(cases);
}

TEST(HostileJsonTest, manifestOfAWrongShapeFromWhoHasTheKeysIsRefused) {
    std::vector<Case> cases;
    for (const Shape& shape : wrongEverywhere()) {
        cases.push_back({shape.name,
                         [shape](const fs::path& package) {
                             sealWithManifest(package, shape.text);
                             return true;
                         },
                         kAltered, "manifest.json"});
    }
    expectRefusals(cases);
}

/// The good manifest with one change, sealed again with the keys.
Case changed(const std::string& name, const std::function<void(json& body)>& change) {
    return {name,
            [change](const fs::path& package) {
                json body = json::parse(bodyOf(readFile(package / "manifest.json")));
                change(body);
                sealWithManifest(package, body.dump());
                return true;
            },
            kAltered, "manifest.json"};
}

Case withPath(const std::string& name, const std::string& path) {
    return changed("the path " + name, [path](json& body) { body["entries"][0]["path"] = path; });
}

Case withEntry(const std::string& name, const char* member, const json& value) {
    return changed("an entry with " + name,
                   [member, value](json& body) { body["entries"][0][member] = value; });
}

TEST(HostileJsonTest, manifestWithWrongMembersIsRefused) {
    std::vector<Case> cases;
    for (const char* const member : {"name", "madeAt", "madeBy", "source", "categories", "entries"}) {
        cases.push_back(changed(std::string("no ") + member, [member](json& body) { body.erase(member); }));
        for (const json& wrong :
             {json(), json(1), json(-1), json(true), json(""), json::array({1}), json::object()}) {
            const bool allowed = member == std::string("madeBy") && wrong.is_string();
            if (!allowed) {
                cases.push_back(changed(std::string(member) + " " + wrong.dump(),
                                        [member, wrong](json& body) { body[member] = wrong; }));
            }
        }
    }
    expectRefusals(cases);
}

TEST(HostileJsonTest, manifestWithWrongEntriesIsRefused) {
    expectRefusals({withPath("to the parent", ".."),
                    withPath("above the package", "../../../../etc/passwd"),
                    withPath("through a folder to the parent", "logo/../../x"),
                    withPath("of the root", "/"),
                    withPath("of the machine", "/etc/passwd"),
                    withPath("of nothing", ""),
                    withPath("with a dot", "logo/./logo.png"),
                    withPath("with two slashes", "logo//logo.png"),
                    withPath("with a slash at its end", "logo/"),
                    withPath("with a NUL", "a\\\\x00b"),
                    withPath("with an escape that is none", "a\\\\xZZ"),
                    withPath("with nine layers", "1/2/3/4/5/6/7/8/9"),
                    withPath("of 256 bytes", std::string(256, 'n')),
                    withPath("of the seal", "validate.txt"),
                    withPath("of the manifest", "manifest.json"),
                    withPath("after those that follow", "zzz"),
                    withEntry("a size below zero", "size", -1),
                    withEntry("a size with a point", "size", 1.5),
                    withEntry("a size as text", "size", "18"),
                    withEntry("a size that no file has", "size", std::uint64_t(-1)),
                    withEntry("a digest that is short", "sha256", "00"),
                    withEntry("a digest in capitals", "sha256", std::string(64, 'A')),
                    withEntry("a type of its own", "type", "link"),
                    changed("a double", [](json& body) {
                        body["entries"].insert(body["entries"].begin(), body["entries"][0]);
                    })});
}

TEST(HostileJsonTest, manifestThatListsSomethingElseIsRefusedByName) {
    Case folder = withEntry("a folder with a file's name", "type", "folder");
    folder.says = "ProductCloneInfo.txt altered";
    Case none = changed("no entries", [](json& body) { body["entries"] = json::array(); });
    none.says = "VXHotel added";
    Case more = changed("one entry more", [](json& body) {
        body["entries"].push_back({{"path", "zzz"}, {"type", "folder"}});
    });
    more.says = "zzz missing";
    expectRefusals({folder, none, more});
}

TEST(HostileJsonTest, manifestThatReadersUnderstandDifferentlyIsRefused) {
    const auto sealed = [](const std::string& name, const std::function<std::string(std::string)>& change) {
        return Case{name,
                    [change](const fs::path& package) {
                        sealWithManifest(package, change(bodyOf(readFile(package / "manifest.json"))));
                        return true;
                    },
                    kAltered, "manifest.json"};
    };
    std::vector<Case> cases = {
        sealed("a name twice",
               [](const std::string& body) { return R"({"name":"other",)" + body.substr(1); }),
        sealed("a name twice, once with an escape",
               [](const std::string& body) { return R"({"\u006eame":"other",)" + body.substr(1); }),
        sealed("a second list of entries",
               [](const std::string& body) { return R"({"entries":[],)" + body.substr(1); }),
        sealed("a member that is too deep",
               [](const std::string& body) { return R"({"later":[[[[[1]]]]],)" + body.substr(1); }),
        sealed("a member of 100,000 layers",
               [](const std::string& body) {
                   return R"({"later":)" + deep("[", "]", "") + "," + body.substr(1);
               }),
        sealed("200,000 values", [](const std::string& body) {
            std::string many = "0";
            for (int count = 1; count < 200'000; ++count) {
                many += ",0";
            }
            return R"({"later":[)" + many + "]," + body.substr(1);
        })};
    cases.push_back({"a later format",
                     [](const fs::path& package) {
                         writeFile(package / "manifest.json",
                                   manifestFile(bodyOf(readFile(package / "manifest.json")), "2.0"));
                         return true;
                     },
                     "newer-package", "later vxclone"});
    for (const char* const version : {"0.9", "1", "1.", "-1.0", "1.0 ", "1.x", "01.-1"}) {
        cases.push_back({std::string("the format ") + version,
                         [version](const fs::path& package) {
                             writeFile(package / "manifest.json",
                                       manifestFile(bodyOf(readFile(package / "manifest.json")), version));
                             return true;
                         },
                         kAltered, "manifest.json"});
    }
    expectRefusals(cases);
}

/// Settings that were put into the package with the keys.
Case withSettings(const std::string& name, const std::string& text) {
    return {"settings: " + name,
            [text](const fs::path& package) {
                writeFile(package / "vconf/Vconf.json", text);
                sealAgain(package);
                return true;
            },
            "settings-damaged", "Vconf.json"};
}

TEST(HostileJsonTest, settingsOfAWrongShapeFromWhoHasTheKeysAreRefused) {
    std::vector<Case> cases;
    for (const Shape& shape : wrongEverywhere()) {
        cases.push_back(withSettings(shape.name, shape.text));
    }
    const std::string key = "db/vxhotel/hotelmenu/welcomemessage";
    cases.push_back(
        withSettings("a key twice", R"({")" + key + R"(":{"string":"a"},")" + key + R"(":{"string":"b"}})"));
    cases.push_back(withSettings("a type twice", R"({")" + key + R"(":{"string":"a","string":"b"}})"));
    cases.push_back(withSettings("a value of 100,000 layers",
                                 R"({")" + key + R"(":{"string":)" + deep("[", "]", "") + "}}"));
    expectRefusals(cases);
}

}  // namespace
}  // namespace vxtest
