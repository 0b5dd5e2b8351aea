// The versioned header at the start of the applications' binary files.
#include "KZFileHeader.h"

#include "LittleEndian.h"

#include <istream>
#include <ostream>

using kzfiles::loadLittleEndian;
using kzfiles::storeLittleEndian;

namespace {

const char kWrongType[] = "Falscher Dateityp.";
const char kDamaged[] =
    "Zerst\xF6"
    "rte Datei.";

// The identifier buffer holds 127 characters and the NUL.
constexpr std::streamsize kTypeBuffer = 128;

// Reads a little-endian field of `count` bytes over `field`. The bytes start
// as the field's current value, so a read that stops early changes only the
// bytes that arrived, as reading into the field itself would.
template <typename Field>
void readField(std::istream& in, Field& field)
{
    unsigned char bytes[sizeof(Field)];
    storeLittleEndian(field, bytes, sizeof bytes);
    in.read(reinterpret_cast<char*>(bytes), sizeof bytes);
    field = static_cast<Field>(loadLittleEndian(bytes, sizeof bytes));
}

template <typename Field>
void writeField(std::ostream& out, Field field)
{
    unsigned char bytes[sizeof(Field)];
    storeLittleEndian(field, bytes, sizeof bytes);
    out.write(reinterpret_cast<const char*>(bytes), sizeof bytes);
}

} // namespace

KZFileHeader::KZFileHeader() : m_version1(0), m_version2(0), m_flag(0) {}

KZFileHeader::~KZFileHeader() = default;

bool KZFileHeader::read(std::istream& in)
{
    char type[kTypeBuffer] = {};
    in.getline(type, kTypeBuffer, '\0');
    if (getFileType() != type) {
        m_errorMsg = kWrongType;
        return false;
    }
    readField(in, m_version1);
    readField(in, m_version2);
    readField(in, m_flag);
    if (in.fail()) {
        m_errorMsg += kDamaged;
        return false;
    }
    return true;
}

bool KZFileHeader::write(std::ostream& out) const
{
    const std::string type = getFileType();
    out.write(type.c_str(), static_cast<std::streamsize>(type.size() + 1));
    writeField(out, m_version1);
    writeField(out, m_version2);
    writeField(out, m_flag);
    return !out.fail();
}

std::uint32_t KZFileHeader::getBinaryStoreSize() const
{
    return static_cast<std::uint32_t>(getFileType().length() + 6);
}

void KZFileHeader::setWrongVersionErrorMsg(const char* prefix, unsigned short expectedVersion,
                                           unsigned short actualVersion) const
{
    m_errorMsg = prefix ? prefix : "";
    m_errorMsg += "Erwartete Version:";
    m_errorMsg += wordToVersionString(expectedVersion);
    m_errorMsg += "  aktuelle Version:";
    m_errorMsg += wordToVersionString(actualVersion);
}
