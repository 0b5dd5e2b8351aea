// kzbs encrypt / decrypt: a file to the library's tagged stream ("RCBC") and
// back, with KZCryptRijndael. Keys come from a file or the environment, never
// from the command line. OUT is written beside itself and renamed into place
// only on success, so an error never leaves a half-written OUT.
#include "commands.h"

#include "checked.h"
#include "file_io.h"

#include "KZCrypt.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <streambuf>

namespace kzbs {
namespace {

constexpr std::uint64_t kMaxPlainSize = KZCrypt::kMaxBufferSize;
constexpr std::uint64_t kMaxStreamSize = KZCrypt::kStreamHeaderSize + kMaxPlainSize;
constexpr std::uint64_t kProgressSize = 64u << 20;

const char kHelpTail[] =
    "  --bits N         key length in bits: 128 (default), 192 or 256\n"
    "  --key-file FILE  read the key from FILE; a trailing newline (LF or CRLF)\n"
    "                   is not part of the key\n"
    "  --key-env VAR    take the key from the environment variable VAR\n"
    "  --byte-table     convert the key byte by byte (needed for keys with\n"
    "                   characters outside ASCII; decrypt needs it then too)\n"
    "  --force          (decrypt) write the data even when its padding shows a\n"
    "                   wrong key\n"
    "\n"
    "IN and OUT may be '-' for standard input and output. OUT is replaced whole\n"
    "or not at all. Keys are never taken as a command-line argument, where other\n"
    "users could read them. The key's bytes are used as they are: a key counts\n"
    "with its first N/8 characters only (16 for 128 bits, 32 for 256), so\n"
    "encrypt refuses longer keys, and keys with characters outside ASCII unless\n"
    "--byte-table is given. decrypt takes every key the format takes (up to N/2\n"
    "characters), so old files stay readable.\n"
    "\n"
    "What the format protects, and what not: it hides the contents from whoever\n"
    "lacks the key, nothing more. Every file is encrypted with one fixed IV, so\n"
    "equal files give equal output and files with equal beginnings give equal\n"
    "beginnings; their sizes show. There is no integrity check: changed data\n"
    "decrypts to changed data without an error. The only sign of a wrong key is\n"
    "the padding of spaces after the data, which decrypt checks: it refuses\n"
    "(exit 2, nothing written) when the padding is not spaces. The check cannot\n"
    "see a wrong key when the plain size is a multiple of 16 (no padding), and\n"
    "one byte of padding lets a wrong key pass one time in 256. For new secrets\n"
    "an authenticated tool (such as age or gpg) is the better choice.\n"
    "Input is limited to 4 GiB (the format's sizes are 32-bit).\n";

const char kEncryptExamples[] =
    "\n"
    "examples:\n"
    "  kzbs encrypt --key-file ~/.config/app.key notes.txt notes.rcbc\n"
    "  KEY=secret kzbs encrypt --bits 256 --key-env KEY - out.rcbc <notes.txt\n";

const char kDecryptExamples[] =
    "\n"
    "examples:\n"
    "  kzbs decrypt --key-file ~/.config/app.key notes.rcbc notes.txt\n"
    "  kzbs decrypt --key-env KEY notes.rcbc - | less\n";

const char kEncryptHead[] =
    "usage: kzbs encrypt [--bits 128|192|256] (--key-file FILE | --key-env VAR)\n"
    "                    [--byte-table] IN OUT\n\n"
    "Encrypts IN into OUT as the tagged stream \"RCBC\": tag, plain size,\n"
    "encrypted size, then the data in AES-CBC, padded with spaces.\n\n";

const char kDecryptHead[] =
    "usage: kzbs decrypt [--bits 128|192|256] (--key-file FILE | --key-env VAR)\n"
    "                    [--byte-table] [--force] IN OUT\n\n"
    "Decrypts an \"RCBC\" stream made by 'kzbs encrypt' (or the library) and\n"
    "writes exactly the original bytes.\n\n";

struct Request {
    KZCrypt::KeySize size = KZCrypt::Key128;
    std::string key;
    bool byteTable = false;
    std::string in, out;
};

std::string describe(const std::string& path)
{
    return path == "-" ? "standard input" : path;
}

// Reads all of a file (or standard input for "-"); refuses more than `limit` bytes.
bool readAll(const std::string& path, std::uint64_t limit, std::string& data, std::string& error,
             const char* tooLarge = " is larger than 4 GiB, more than the format's 32-bit sizes can hold")
{
    if (path != "-" && !(error = unreadable(path)).empty())
        return false;
    std::FILE* file = path == "-" ? stdin : std::fopen(path.c_str(), "rb");
    if (!file) {
        error = "cannot open " + path + ": " + std::strerror(errno);
        return false;
    }
    struct stat info {};
    if (::fstat(::fileno(file), &info) == 0 && S_ISREG(info.st_mode)) {
        if (static_cast<std::uint64_t>(info.st_size) > limit) {
            error = describe(path) + tooLarge;
            if (file != stdin)
                std::fclose(file);
            return false;
        }
        data.reserve(static_cast<std::size_t>(info.st_size));
    }
    char chunk[1 << 16];
    std::size_t got;
    while ((got = std::fread(chunk, 1, sizeof chunk, file)) > 0) {
        if (data.size() + got > limit) {
            error = describe(path) + tooLarge;
            break;
        }
        data.append(chunk, got);
    }
    if (error.empty() && std::ferror(file))
        error = "cannot read " + describe(path) + ": " + std::strerror(errno);
    if (file != stdin)
        std::fclose(file);
    return error.empty();
}

// Writes through `emit` to OUT: standard output directly (the program checks
// it before exit), a file by way of a temporary file beside it that replaces
// it only when all went well.
bool writeOut(const std::string& path, const std::function<bool(std::ostream&)>& emit, std::string& error)
{
    if (path == "-") {
        emit(std::cout);
        return true;
    }
    FileReplacement out(path);
    if (out.write(emit) && out.commit())
        return true;
    error = out.error();
    return false;
}

// What the command line gave; checked and turned into a Request by prepare().
struct Words {
    std::string bits;
    std::optional<std::string> keyFile, keyEnv;
    bool byteTable = false;
    bool force = false;
    std::vector<std::string> files;
};

// The key text from --key-file or --key-env.
Checked<std::string> loadKey(const Words& words)
{
    if (words.keyFile && words.keyEnv)
        return refuse("give the key either with --key-file or with --key-env, not both");
    if (words.keyEnv) {
        const char* value = std::getenv(words.keyEnv->c_str());
        if (!value)
            return refuse("the environment variable " + *words.keyEnv + " is not set");
        return std::string(value);
    }
    if (!words.keyFile)
        return refuse("give the key with --key-file FILE or --key-env VAR");
    std::string key, error;
    if (!readAll(*words.keyFile, 1 << 20, key, error, " is larger than 1 MiB, too large for a key file"))
        return refuse(error);
    if (!key.empty() && key.back() == '\n') {
        key.pop_back();
        if (!key.empty() && key.back() == '\r')
            key.pop_back();
    }
    return key;
}

// The key, if kzbs takes it for encrypt (or decrypt) of this size.
Checked<std::string> checkKey(const std::string& key, KZCrypt::KeySize size, bool byteTable, bool encrypt)
{
    const std::size_t bits = static_cast<std::size_t>(size);
    if (key.empty())
        return refuse("the key is empty");
    // The format accepts longer keys than it uses: encrypt refuses them, as
    // they would look stronger than they are. Keys made elsewhere stay
    // readable, so decrypt takes what the format takes.
    const std::size_t most = encrypt ? KZCrypt::keyCharactersUsed(size) : KZCrypt::longestKeyText(size);
    if (key.size() > most)
        return refuse("the key has " + std::to_string(key.size()) + " characters, but a " + std::to_string(bits)
                      + "-bit key " + (encrypt ? "uses only its first " : "has at most ") + std::to_string(most)
                      + (encrypt && bits < 256 ? "; --bits 256 uses up to 32" : ""));
    if (byteTable)
        return key;
    // Without the byte table the library cannot represent some characters
    // and would encrypt with an all-zero key without a word.
    if (KZCrypt::keyBytes(key, size, false).empty())
        return refuse(
            "the key contains a control character (below 0x10) that the key conversion cannot "
            "represent; use --byte-table");
    const bool ascii =
        std::none_of(key.begin(), key.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    if (encrypt && !ascii)
        return refuse(
            "the key contains letters outside ASCII (such as umlauts), which the key conversion "
            "does not keep apart; use a key of ASCII characters, or --byte-table (and give "
            "--byte-table to decrypt too)");
    return key;
}

// The request the words make.
Checked<Request> prepare(const Words& words, bool encrypt)
{
    Request request;
    request.size = words.bits == "192" ? KZCrypt::Key192 : words.bits == "256" ? KZCrypt::Key256 : KZCrypt::Key128;
    request.byteTable = words.byteTable;
    const Checked<std::string> key = loadKey(words);
    if (words.files.size() != 2)
        return refuse(std::string("usage: kzbs ") + (encrypt ? "encrypt" : "decrypt")
                      + " [--bits N] (--key-file FILE | --key-env VAR) IN OUT (see --help)");
    if (!key.ok())
        return key.refusal();
    const Checked<std::string> usable = checkKey(key.value(), request.size, request.byteTable, encrypt);
    if (!usable.ok())
        return usable.refusal();
    request.key = usable.value();
    request.in = words.files[0];
    request.out = words.files[1];
    return request;
}

void progress(std::uint64_t size, const char* what)
{
    if (size >= kProgressSize && ::isatty(2))
        std::cerr << "kzbs: " << what << ' ' << (size >> 20) << " MiB..." << std::endl;
}

// A read-only, seekable stream over bytes already in memory, so the library
// reads the stream without another copy of it.
class MemoryBuf : public std::streambuf {
public:
    MemoryBuf(const char* data, std::size_t size)
    {
        char* begin = const_cast<char*>(data);
        setg(begin, begin, begin + size);
    }

protected:
    pos_type seekoff(off_type off, std::ios_base::seekdir dir, std::ios_base::openmode) override
    {
        const off_type base = dir == std::ios_base::beg   ? 0
                              : dir == std::ios_base::cur ? gptr() - eback()
                                                          : egptr() - eback();
        const off_type target = base + off;
        if (target < 0 || target > egptr() - eback())
            return pos_type(off_type(-1));
        setg(eback(), eback() + target, egptr());
        return pos_type(target);
    }
    pos_type seekpos(pos_type pos, std::ios_base::openmode mode) override
    {
        return seekoff(off_type(pos), std::ios_base::beg, mode);
    }
};

// The header of a stream, or what is wrong with the stream, before the
// library reads it.
Checked<KZCrypt::StreamHeader> readHeader(const std::string& data, const std::string& name)
{
    KZCrypt::StreamHeader header{};
    const bool complete = KZCrypt::readStreamHeader(data.data(), data.size(), header);
    if (data.size() < 4 || data.compare(0, 4, "RCBC") != 0)
        return refuse(name + " is not an encrypted stream (its tag is not \"RCBC\")");
    if (!complete)
        return refuse(name + " is truncated: its header is incomplete");
    const std::uint32_t plain = header.bufferSize, crypted = header.cryptedSize;
    if (crypted % 16 != 0 || crypted < plain)
        return refuse(name + " is damaged: its sizes (" + std::to_string(plain) + ", " + std::to_string(crypted)
                      + ") do not fit together");
    const std::uint64_t present = data.size() - KZCrypt::kStreamHeaderSize;
    if (present < crypted)
        return refuse(name + " is truncated: " + std::to_string(present) + " of " + std::to_string(crypted)
                      + " bytes of encrypted data");
    if (present > crypted)
        return refuse(name + " has " + std::to_string(present - crypted)
                      + " unexpected bytes after the encrypted data");
    return header;
}

int encrypt(const Words& words)
{
    const Request request = prepare(words, true).value();
    std::string data, error;
    if (!readAll(request.in, kMaxPlainSize, data, error))
        return fail(error);
    progress(data.size(), "encrypting");
    KZCryptRijndael crypt(request.key, request.size, request.byteTable);
    crypt.setBuffer(data);
    std::string().swap(data);
    crypt.encode();
    if (!writeOut(
            request.out, [&](std::ostream& out) { return crypt.writeEncrypted(out); }, error))
        return fail(error);
    return 0;
}

int decrypt(const Words& words)
{
    const Request request = prepare(words, false).value();
    std::string data, error;
    if (!readAll(request.in, kMaxStreamSize, data, error))
        return fail(error);
    readHeader(data, describe(request.in)).value();
    KZCryptRijndael crypt(request.key, request.size, request.byteTable);
    {
        MemoryBuf buffer(data.data(), data.size());
        std::istream in(&buffer);
        if (!crypt.readEncrypted(in))
            return fail(describe(request.in) + " could not be read as an encrypted stream");
    }
    std::string().swap(data);
    progress(crypt.getCryptedSize(), "decrypting");
    crypt.decode();
    if (!words.force && !crypt.hasSpacePadding())
        return fail(
            "the decrypted data does not end in the format's padding of spaces: the key or --bits "
            "is wrong (--force writes the data anyway)");
    const auto emit = [&](std::ostream& out) {
        out.write(crypt.getBuffer(), static_cast<std::streamsize>(crypt.getBufferSize()));
        return !out.fail();
    };
    if (!writeOut(request.out, emit, error))
        return fail(error);
    return 0;
}

std::string helpText(bool encrypt)
{
    return std::string(encrypt ? kEncryptHead : kDecryptHead) + kHelpTail
           + (encrypt ? kEncryptExamples : kDecryptExamples);
}

void addCommand(Program& program, bool encrypt)
{
    static const std::string encryptHelp = helpText(true), decryptHelp = helpText(false);
    auto words = std::make_shared<Words>();
    CLI::App& command = encrypt ? program.add("encrypt", "encrypt a file into the tagged stream format",
                                              encryptHelp.c_str(), [words] { return kzbs::encrypt(*words); })
                                : program.add("decrypt", "decrypt a tagged stream back into the original bytes",
                                              decryptHelp.c_str(), [words] { return kzbs::decrypt(*words); });
    command.add_option("--bits", words->bits)->check(CLI::IsMember({"128", "192", "256"}));
    addOptional(command, "--key-file", words->keyFile);
    addOptional(command, "--key-env", words->keyEnv);
    command.add_flag("--byte-table", words->byteTable);
    if (!encrypt)
        command.add_flag("--force", words->force);
    program.addWords(command, words->files);
}

} // namespace

void addCryptCommands(Program& program)
{
    addCommand(program, true);
    addCommand(program, false);
}

} // namespace kzbs
