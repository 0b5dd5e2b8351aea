// The Windows private-profile calls on QSettings' INI format. Each call works
// on a QSettings of its own, which writes pending changes back when it goes.
#include "CrossPlatformApi.h"

#include <QSettings>
#include <QStringList>

namespace CrossPlatformApi {
namespace {

std::string toStd(const QString& text)
{
    const QByteArray bytes = text.toLatin1();
    return std::string(bytes.constData(), static_cast<size_t>(bytes.size()));
}

QString fileNameOf(const char* fileName)
{
    return QString::fromLocal8Bit(fileName);
}

} // namespace

std::string getIniString(const char* section, const char* key, const char* defaultValue, const char* fileName)
{
    QSettings settings(fileNameOf(fileName), QSettings::IniFormat);
    settings.beginGroup(QString::fromLatin1(section));
    const QVariant value = settings.value(QString::fromLatin1(key), QVariant(QString::fromLatin1(defaultValue)));
    return toStd(value.toString());
}

int getIniInt(const char* section, const char* key, int defaultValue, const char* fileName)
{
    QSettings settings(fileNameOf(fileName), QSettings::IniFormat);
    settings.beginGroup(QString::fromLatin1(section));
    return settings.value(QString::fromLatin1(key), QVariant(defaultValue)).toInt();
}

void writeIniString(const char* section, const char* key, const char* value, const char* fileName)
{
    QSettings settings(fileNameOf(fileName), QSettings::IniFormat);
    settings.beginGroup(QString::fromLatin1(section));
    settings.setValue(QString::fromLatin1(key), QVariant(QString::fromLatin1(value)));
}

std::vector<std::string> getIniSections(const char* fileName)
{
    QSettings settings(fileNameOf(fileName), QSettings::IniFormat);
    std::vector<std::string> sections;
    for (const QString& group : settings.childGroups())
        sections.push_back(toStd(group));
    return sections;
}

std::vector<std::string> getIniSectionEntries(const char* section, const char* fileName)
{
    QSettings settings(fileNameOf(fileName), QSettings::IniFormat);
    settings.beginGroup(QString::fromLocal8Bit(section));
    std::vector<std::string> entries;
    for (const QString& key : settings.childKeys()) {
        const QString value = settings.value(key, QVariant()).toString();
        entries.push_back(toStd(QStringLiteral("%1=%2").arg(key).arg(value)));
    }
    return entries;
}

} // namespace CrossPlatformApi
