#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "VxpkRun.h"
#include "container/PackageBytes.h"
#include "support/ScratchFolder.h"

namespace vx {
namespace {

using namespace test;

constexpr const char* kNoMinisign =
    "minisign is not installed; scripts/install-deps.sh installs it for the round trips";

class vxpkSigningTest : public ::testing::Test {
protected:
    void SetUp() override {
        scratch.writeFile("w/app.vxpk", kPackage);
        scratch.writeFile("w/other.vxpk", EncodePackage({FileRecord("a", "other")}));
    }
    VxpkResult vxpk(const std::vector<std::string>& arguments, const std::string& input = "") {
        return RunProgram(VXPK_PATH, arguments, scratch.path("w"), input);
    }
    VxpkResult minisign(const std::vector<std::string>& arguments, const std::string& input = "") {
        return RunProgram("minisign", arguments, scratch.path("w"), input);
    }
    bool haveMinisign() { return minisign({"-v"}).exitCode == 0; }
    // Makes a key pair without a password and gives its key id.
    std::string plainKeys(const std::string& name) {
        const auto made = vxpk({"keygen", "--public-key", name + ".pub", "--secret-key",
                                name + ".key", "--without-password"});
        EXPECT_EQ(made.exitCode, 0) << made.err;
        std::smatch id;
        EXPECT_TRUE(std::regex_search(made.out, id, std::regex("key id ([0-9A-F]{16})")));
        return id.size() > 1 ? id[1].str() : "";
    }
    // Every file under the scratch folder with its bytes.
    std::map<std::string, std::string> filesOnDisk() const {
        std::map<std::string, std::string> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(scratch.path())) {
            const std::string path = entry.path().string();
            files[path] = entry.is_regular_file()
                              ? scratch.readFile(path.substr(scratch.path().size() + 1))
                              : "";
        }
        return files;
    }
    // Runs vxpk with command then options, and expects a refusal: the exit
    // code, the one line of error, and every file as it was.
    void expectRefused(std::vector<std::string> command, const std::vector<std::string>& options,
                       const std::string& input, int exitCode, const std::string& error) {
        const auto before = filesOnDisk();
        command.insert(command.end(), options.begin(), options.end());
        const auto refused = vxpk(command, input);
        EXPECT_EQ(refused.exitCode, exitCode) << error;
        EXPECT_EQ(refused.err, error);
        EXPECT_EQ(filesOnDisk(), before) << error;
    }
    std::string read(const std::string& name) const { return scratch.readFile("w/" + name); }
    void write(const std::string& name, const std::string& bytes) const {
        scratch.writeFile("w/" + name, bytes);
    }

    const std::string kPackage =
        EncodePackage({FolderRecord("d"), FileRecord("index.html", "<p>hello</p>", "d")}, "My App",
                      "com.example.app");
    ScratchFolder scratch;
};

std::string Line(const std::string& text, int number) {
    std::size_t start = 0;
    for (int i = 0; i < number; ++i) {
        start = text.find('\n', start) + 1;
    }
    return text.substr(start, text.find('\n', start) - start);
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

TEST_F(vxpkSigningTest, ourSignature_isCheckedByMinisignAndByVerify) {
    if (!haveMinisign()) {
        GTEST_SKIP() << kNoMinisign;
    }
    const std::string id = plainKeys("k");
    const auto signedByUs = vxpk({"sign", "app.vxpk", "--secret-key", "k.key"});
    ASSERT_EQ(signedByUs.exitCode, 0) << signedByUs.err;

    const auto checked = minisign({"-Vm", "app.vxpk", "-p", "k.pub"});
    EXPECT_EQ(checked.exitCode, 0) << checked.err;
    EXPECT_TRUE(std::regex_search(
        checked.out, std::regex("Trusted comment: timestamp:[0-9]+\tfile:app.vxpk\tname:My "
                                "App\tuid:com.example.app\thashed\n")))
        << checked.out;
    const auto verified = vxpk({"verify", "app.vxpk", "--public-key", "k.pub"});
    EXPECT_EQ(verified.exitCode, 0) << verified.err;
    EXPECT_NE(verified.out.find("app.vxpk: good signature by key " + id + "\n"), std::string::npos)
        << verified.out;
}

TEST_F(vxpkSigningTest, chosenSignaturePathAndComment_reachMinisign) {
    if (!haveMinisign()) {
        GTEST_SKIP() << kNoMinisign;
    }
    plainKeys("k");
    const auto signedByUs = vxpk({"sign", "app.vxpk", "--secret-key", "k.key", "--signature",
                                  "out.sig", "--trusted-comment", "release 2.1 \xc3\xa9"});
    ASSERT_EQ(signedByUs.exitCode, 0) << signedByUs.err;
    EXPECT_FALSE(std::filesystem::exists(scratch.path("w/app.vxpk.minisig")));
    const auto checked = minisign({"-Vm", "app.vxpk", "-p", "k.pub", "-x", "out.sig"});
    EXPECT_EQ(checked.exitCode, 0) << checked.err;
    EXPECT_NE(checked.out.find("Trusted comment: release 2.1 \xc3\xa9\n"), std::string::npos);
}

// Each scrypt derivation takes a second or more and 1 GiB, so one test
// makes both encrypted key pairs and crosses them.
TEST_F(vxpkSigningTest, encryptedKeys_signAcrossBothTools_withPasswordsOnStandardInput) {
    if (!haveMinisign()) {
        GTEST_SKIP() << kNoMinisign;
    }
    const auto ours =
        vxpk({"keygen", "--public-key", "v.pub", "--secret-key", "v.key"}, "our password\n");
    ASSERT_EQ(ours.exitCode, 0) << ours.err;
    const auto theirs =
        minisign({"-G", "-p", "m.pub", "-s", "m.key"}, "their password\ntheir password\n");
    ASSERT_EQ(theirs.exitCode, 0) << theirs.err;

    // minisign signs with our encrypted key; we check its signature.
    const auto minisignSigned =
        minisign({"-S", "-s", "v.key", "-m", "app.vxpk", "-x", "m1.sig"}, "our password\n");
    ASSERT_EQ(minisignSigned.exitCode, 0) << minisignSigned.err;
    const auto verified =
        vxpk({"verify", "app.vxpk", "--public-key", "v.pub", "--signature", "m1.sig"});
    EXPECT_EQ(verified.exitCode, 0) << verified.err;

    // We sign with minisign's encrypted key; minisign checks our signature.
    const auto vxpkSigned = vxpk(
        {"sign", "app.vxpk", "--secret-key", "m.key", "--signature", "v1.sig"}, "their password\n");
    ASSERT_EQ(vxpkSigned.exitCode, 0) << vxpkSigned.err;
    const auto checked = minisign({"-Vm", "app.vxpk", "-p", "m.pub", "-x", "v1.sig"});
    EXPECT_EQ(checked.exitCode, 0) << checked.err;

    // minisign signs with its own encrypted key; we check its signature.
    ASSERT_EQ(minisign({"-S", "-s", "m.key", "-m", "app.vxpk", "-x", "m2.sig"}, "their password\n")
                  .exitCode,
              0);
    const auto theirsVerified =
        vxpk({"verify", "app.vxpk", "--public-key", "m.pub", "--signature", "m2.sig"});
    EXPECT_EQ(theirsVerified.exitCode, 0) << theirsVerified.err;
}

TEST_F(vxpkSigningTest, minisignKeyWithoutPassword_signaturesAndKeyWorkWithVxpk) {
    if (!haveMinisign()) {
        GTEST_SKIP() << kNoMinisign;
    }
    ASSERT_EQ(minisign({"-G", "-W", "-p", "m.pub", "-s", "m.key"}).exitCode, 0);
    ASSERT_EQ(minisign({"-S", "-W", "-s", "m.key", "-m", "app.vxpk"}).exitCode, 0);
    ASSERT_EQ(
        minisign({"-S", "-l", "-W", "-s", "m.key", "-m", "app.vxpk", "-x", "legacy.sig"}).exitCode,
        0);
    const std::string keyLine = Line(read("m.pub"), 1);

    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"--public-key", "m.pub"},
             {"--public-key-string", keyLine},
             {"--public-key", "m.pub", "--signature", "legacy.sig"}}) {
        std::vector<std::string> command{"verify", "app.vxpk"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        const auto verified = vxpk(command);
        EXPECT_EQ(verified.exitCode, 0) << arguments.back() << ": " << verified.err;
    }
    // minisign writes no checksum into such a key; ours still signs with it.
    ASSERT_EQ(vxpk({"sign", "app.vxpk", "--secret-key", "m.key", "--signature", "v.sig"}).exitCode,
              0);
    EXPECT_EQ(minisign({"-Vm", "app.vxpk", "-p", "m.pub", "-x", "v.sig"}).exitCode, 0);
}

TEST_F(vxpkSigningTest, changedPackageSignatureOrKey_isRefusedByVerify) {
    const std::string id = plainKeys("k");
    const std::string otherId = plainKeys("o");
    ASSERT_EQ(vxpk({"sign", "app.vxpk", "--secret-key", "k.key"}).exitCode, 0);
    ASSERT_EQ(vxpk({"sign", "other.vxpk", "--secret-key", "k.key"}).exitCode, 0);
    const std::string signature = read("app.vxpk.minisig");
    const std::string publicKey = read("k.pub");
    const std::string mismatch =
        "vxpk: error: app.vxpk: the signature does not match the "
        "file's bytes\n";
    struct Case {
        std::string what;
        std::function<void()> change;
        std::vector<std::string> options;
        std::string error;
    };
    const std::vector<std::string> ourKey = {"--public-key", "k.pub"};
    const std::vector<Case> cases = {
        {"last content byte", [&] { write("app.vxpk", Replaced(kPackage, "</p>", "</q>")); },
         ourKey, mismatch},
        {"byte of the name", [&] { write("app.vxpk", Replaced(kPackage, "My App", "My Apq")); },
         ourKey, mismatch},
        {"first byte", [&] { write("app.vxpk", Replaced(kPackage, "\x04V001", "\x04W001")); },
         ourKey, "vxpk: error: app.vxpk: header at byte 0: not a package of version V001\n"},
        {"trusted comment",
         [&] { write("app.vxpk.minisig", Replaced(signature, "\thashed", "\thashes")); }, ourKey,
         "vxpk: error: app.vxpk.minisig: the trusted comment does not match its signature\n"},
        {"another key",
         [] {},
         {"--public-key", "o.pub"},
         "vxpk: error: app.vxpk.minisig: signed by another key: " + id + " (the public key is " +
             otherId + ")\n"},
        {"another file's signature",
         [] {},
         {"--public-key", "k.pub", "--signature", "other.vxpk.minisig"},
         mismatch},
        {"cut signature",
         [&] { write("app.vxpk.minisig", signature.substr(0, signature.find("trusted"))); }, ourKey,
         "vxpk: error: app.vxpk.minisig: not a minisign signature: it must be four lines\n"},
        {"garbled signature",
         [&] { write("app.vxpk.minisig", Replaced(signature, "\nRU", "\nR*")); }, ourKey,
         "vxpk: error: app.vxpk.minisig: the signature is not base64 of 74 bytes\n"},
        {"cut public key", [&] { write("k.pub", publicKey.substr(0, publicKey.find('\n'))); },
         ourKey, "vxpk: error: k.pub: not a minisign public key: it must be two lines\n"},
        {"garbled public key", [&] { write("k.pub", Replaced(publicKey, "\nRW", "\nQW")); }, ourKey,
         "vxpk: error: k.pub: the public key is not an Ed25519 key (algorithm \"Ed\")\n"},
        {"empty key file name",
         [] {},
         {"--public-key", ""},
         "vxpk: error: --public-key: empty: no key to check the signature against\n"},
        {"empty key string",
         [] {},
         {"--public-key-string", ""},
         "vxpk: error: --public-key-string: empty: no key to check the signature against\n"},
    };
    for (const auto& [what, change, options, error] : cases) {
        write("app.vxpk", kPackage);
        write("app.vxpk.minisig", signature);
        write("k.pub", publicKey);
        change();
        SCOPED_TRACE(what);
        expectRefused({"verify", "app.vxpk"}, options, "", 1, error);
    }
}

TEST_F(vxpkSigningTest, unsoundPackage_withAGoodSignatureOverItsBytes_isRefused) {
    if (!haveMinisign()) {
        GTEST_SKIP() << kNoMinisign;
    }
    plainKeys("k");
    write("app.vxpk", EncodePackage({FileRecord("a", "x", "d")}));
    // Our own sign refuses such a package, so minisign signs it.
    ASSERT_EQ(minisign({"-S", "-W", "-s", "k.key", "-m", "app.vxpk"}).exitCode, 0);
    const auto verified = vxpk({"verify", "app.vxpk", "--public-key", "k.pub", "--json"});
    EXPECT_EQ(verified.exitCode, 1);
    EXPECT_EQ(verified.err,
              "vxpk: error: app.vxpk: record 1 at byte 23: the parent folder \"d\" is not "
              "recorded before this item\n");
    // The JSON verdict reports both checks.
    EXPECT_NE(verified.out.find("\"sound\":false"), std::string::npos) << verified.out;
    EXPECT_NE(verified.out.find("\"signature\":{\"valid\":true"), std::string::npos)
        << verified.out;
}

TEST_F(vxpkSigningTest, badKeyPasswordOrPackage_isRefusedBySign_andWritesNothing) {
    plainKeys("k");
    ASSERT_EQ(
        vxpk({"keygen", "--public-key", "e.pub", "--secret-key", "e.key"}, "right\n").exitCode, 0);
    const std::string secretKey = read("k.key");
    struct Case {
        std::string what;
        std::function<void()> change;
        std::vector<std::string> options;
        std::string input;
        std::string error;
    };
    const std::vector<Case> cases = {
        {"wrong password",
         [] {},
         {"--secret-key", "e.key"},
         "wrong\n",
         "vxpk: error: e.key: wrong password for this key\n"},
        {"no password",
         [] {},
         {"--secret-key", "e.key"},
         "",
         "vxpk: error: standard input: no password given\n"},
        {"cut secret key",
         [&] { write("k.key", secretKey.substr(0, secretKey.find('\n'))); },
         {"--secret-key", "k.key"},
         "",
         "vxpk: error: k.key: not a minisign secret key: it must be two lines\n"},
        {"garbled secret key",
         [&] {
             write("k.key", secretKey.substr(0, 200) + (secretKey[200] == 'A' ? "B" : "A") +
                                secretKey.substr(201));
         },
         {"--secret-key", "k.key"},
         "",
         "vxpk: error: k.key: the secret key is damaged: its checksum does not match\n"},
        {"unsound package",
         [&] { write("app.vxpk", EncodePackage({FileRecord("..", "x")})); },
         {"--secret-key", "k.key"},
         "",
         "vxpk: error: app.vxpk: record 1 at byte 21: the name \"..\" leads out of its folder\n"},
        {"signature over the package",
         [] {},
         {"--secret-key", "k.key", "--signature", "./app.vxpk"},
         "",
         "vxpk: error: ./app.vxpk: the signature would replace the package\n"},
        {"comment of two lines",
         [] {},
         {"--secret-key", "k.key", "--trusted-comment", "one\ntwo"},
         "",
         "vxpk: error: trusted comment: the trusted comment holds a line break\n"},
    };
    for (const auto& [what, change, options, input, error] : cases) {
        write("app.vxpk", kPackage);
        write("k.key", secretKey);
        change();
        SCOPED_TRACE(what);
        expectRefused({"sign", "app.vxpk"}, options, input, 1, error);
    }
}

TEST_F(vxpkSigningTest, keygen_writesAPrivateSecretKey_andNeverReplacesWithoutForce) {
    plainKeys("k");
    struct stat info {};
    ASSERT_EQ(::stat(scratch.path("w/k.key").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0600u);
    const auto before = filesOnDisk();

    for (const auto& [secret, error] : std::vector<std::pair<std::string, std::string>>{
             {"k.key", "vxpk: error: k.key: the key file exists; --force replaces it\n"},
             {"new.key", "vxpk: error: k.pub: the key file exists; --force replaces it\n"}}) {
        expectRefused({"keygen", "--public-key", "k.pub", "--secret-key", secret},
                      {"--without-password"}, "", 1, error);
    }
    const auto forced = vxpk({"keygen", "--public-key", "k.pub", "--secret-key", "k.key",
                              "--without-password", "--force"});
    EXPECT_EQ(forced.exitCode, 0) << forced.err;
    EXPECT_NE(read("k.key"), before.at(scratch.path("w/k.key")));
    EXPECT_NE(read("k.pub"), before.at(scratch.path("w/k.pub")));
}

// The password is typed on a real terminal: asked twice, never echoed, and
// the key opens with it afterwards.
TEST_F(vxpkSigningTest, keygenOnATerminal_asksTwiceWithoutEcho) {
    const auto [made, echoAfter] = RunVxpkOnTerminal(
        {"keygen", "--public-key", "t.pub", "--secret-key", "t.key"}, scratch.path("w"),
        {{"Password: ", "typed secret\n"}, {"Password (one more time): ", "typed secret\n"}});
    EXPECT_TRUE(echoAfter);
    EXPECT_EQ(made.exitCode, 0) << made.err;
    EXPECT_EQ(made.err.find("typed"), std::string::npos) << made.err;
    EXPECT_NE(made.err.find("Password (one more time): "), std::string::npos) << made.err;
    const auto signedPackage =
        vxpk({"sign", "app.vxpk", "--secret-key", "t.key"}, "typed secret\n");
    EXPECT_EQ(signedPackage.exitCode, 0) << signedPackage.err;

    const auto before = filesOnDisk();
    const auto mismatched =
        RunVxpkOnTerminal({"keygen", "--public-key", "u.pub", "--secret-key", "u.key"},
                          scratch.path("w"),
                          {{"Password: ", "one\n"}, {"Password (one more time): ", "two\n"}})
            .run;
    EXPECT_EQ(mismatched.exitCode, 1);
    EXPECT_NE(mismatched.err.find("vxpk: error: password: the two passwords differ"),
              std::string::npos)
        << mismatched.err;
    EXPECT_EQ(filesOnDisk(), before);
}

TEST_F(vxpkSigningTest, ctrlCAtThePasswordPrompt_givesTheEchoBack_andWritesNothing) {
    // An encrypted key that minisign made; the prompt comes before scrypt.
    write("e.key",
          "untrusted comment: minisign encrypted secret "
          "key\nRWRTY0IyZiZgzuxKTjZDOAJPh8UKJMlBspzAKde7proh76KP2kAAAAACAAAAAAAAAEAAAAAAtr5bQuk0oLR"
          "FyZAI4PYLK/"
          "pii5djabi038aXVq69KD+4WDesoiJ6UnrFnMDVE+7rVaCILSfC+m4DfQ4eJMcakoir5T4b1PzgIGclsd237/"
          "6atTfvKzGAhzL886h3+b7leMst2y7gnZQ=\n");
    const auto before = filesOnDisk();
    for (const auto& command : std::vector<std::vector<std::string>>{
             {"keygen", "--public-key", "t.pub", "--secret-key", "t.key"},
             {"sign", "app.vxpk", "--secret-key", "e.key"}}) {
        const auto [stopped, echoAfter] =
            RunVxpkOnTerminal(command, scratch.path("w"), {{"Password: ", "\x03"}});
        EXPECT_EQ(stopped.exitCode, 128 + SIGINT) << stopped.err;
        EXPECT_TRUE(echoAfter);
        EXPECT_EQ(filesOnDisk(), before);
    }
}

// A failure leaves no new file, and with --force the old secret key as it
// was.
TEST_F(vxpkSigningTest, failedKeygen_leavesNothingBehind) {
    struct Case {
        std::vector<std::string> options;
        std::string input;
        int exitCode;
        std::string error;
    };
    const std::vector<Case> cases = {
        {{"--secret-key", "k.key", "--public-key", "missing/k.pub", "--without-password"},
         "",
         3,
         "vxpk: error: missing/k.pub: No such file or directory\n"},
        {{"--secret-key", "old.key", "--public-key", "missing/k.pub", "--force",
          "--without-password"},
         "",
         3,
         "vxpk: error: missing/k.pub: No such file or directory\n"},
        {{"--secret-key", "k.key", "--public-key", "k.pub"},
         "",
         1,
         "vxpk: error: standard input: no password given\n"},
        {{"--secret-key", "k.key", "--public-key", "k.key", "--force", "--without-password"},
         "",
         1,
         "vxpk: error: k.key: the public and the secret key need two files\n"},
        {{"--secret-key", "old.key", "--public-key", "./old.key", "--force", "--without-password"},
         "",
         1,
         "vxpk: error: old.key: the public and the secret key need two files\n"},
        {{"--secret-key", "k.key", "--public-key", "./k.key", "--force", "--without-password"},
         "",
         1,
         "vxpk: error: k.key: the public and the secret key need two files\n"},
        {{"--secret-key", "k.key", "--public-key", "k.pub"},
         "\n",
         1,
         "vxpk: error: password: empty; --without-password makes a key without one\n"},
    };
    write("old.key", "the old secret key\n");
    for (const auto& [options, input, exitCode, error] : cases) {
        expectRefused({"keygen"}, options, input, exitCode, error);
    }
}

// Process substitution hands the keys over as pipes, which cannot seek.
TEST_F(vxpkSigningTest, keysFromPipes_signAndVerify) {
    plainKeys("k");
    const auto piped = RunProgram("bash",
                                  {"-c",
                                   "set -e; \"$0\" sign app.vxpk --secret-key <(cat k.key); "
                                   "\"$0\" verify app.vxpk --public-key <(cat k.pub)",
                                   VXPK_PATH},
                                  scratch.path("w"));
    EXPECT_EQ(piped.exitCode, 0) << piped.err;
    EXPECT_NE(piped.out.find("app.vxpk: good signature by key"), std::string::npos) << piped.out;
}

TEST_F(vxpkSigningTest, info_printsTheSha256OfThePackageBytes) {
    const auto summed = RunProgram("sha256sum", {"app.vxpk"}, scratch.path("w"), "");
    ASSERT_EQ(summed.exitCode, 0);
    const auto described = vxpk({"info", "app.vxpk"});
    EXPECT_EQ(described.exitCode, 0);
    EXPECT_NE(described.out.find("sha256: " + summed.out.substr(0, 64) + "\n"), std::string::npos)
        << described.out;
}

TEST_F(vxpkSigningTest, json_reportsASoundPackageWithABadSignature) {
    plainKeys("k");
    plainKeys("o");
    ASSERT_EQ(vxpk({"sign", "app.vxpk", "--secret-key", "o.key"}).exitCode, 0);
    const auto verified = vxpk({"verify", "app.vxpk", "--public-key", "k.pub", "--json"});
    EXPECT_EQ(verified.exitCode, 1);
    EXPECT_TRUE(std::regex_match(
        verified.out, std::regex("\\{\"sound\":true,\"records\":2,\"signature\":\\{\"valid\":false,"
                                 "\"problem\":\"app.vxpk.minisig: signed by another key: "
                                 "[0-9A-F]{16} \\(the public key is [0-9A-F]{16}\\)\"\\}\\}\n")))
        << verified.out;
    EXPECT_EQ(std::count(verified.err.begin(), verified.err.end(), '\n'), 1) << verified.err;
}

TEST_F(vxpkSigningTest, signatureWithoutKey_isAUsageError) {
    const auto verified = vxpk({"verify", "app.vxpk", "--signature", "x.minisig"});
    EXPECT_EQ(verified.exitCode, 2);
    EXPECT_NE(verified.err.find("--signature: needs --public-key or --public-key-string"),
              std::string::npos)
        << verified.err;
}

}  // namespace
}  // namespace vx
