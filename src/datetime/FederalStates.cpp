// The German federal states: names, abbreviations, id mapping.
#include "KZCalendar.h"

#include <mutex>

using namespace KZBasicServices;

namespace {

const BundesLand bundesLandConst[16] = {BW, BY, BE, BB, HB, HH, HE, MV, NI, NW, RP, SL, SN, ST, SH, TH};

} // namespace

Bundeslaender::NameAndAbreviation::NameAndAbreviation(const char* name, const char* abreviation)
    : m_name(name ? name : ""), m_abreviation(abreviation ? abreviation : "")
{
}

Bundeslaender::Bundeslaender()
{
    const char* const unknown = "Unbekanntes Bundesland";
    const struct {
        BundesLand land;
        const char* name;
        const char* abbreviation;
    } rows[] = {
        {XX, unknown, "XX"},
        {Alle, unknown, "Alle"},
        {BW, "Baden-W\xFCrttemberg", "BW"},
        {BY, "Bayern", "BY"},
        {BE, "Berlin", "BE"},
        {BB, "Brandenburg", "BB"},
        {HB, "Bremen", "HB"},
        {HH, "Hamburg", "HH"},
        {HE, "Hessen", "HE"},
        {MV, "Mecklenburg-Vorpommern", "MV"},
        {NI, "Niedersachsen", "NI"},
        {NW, "Nordrhein-Westfalen", "NW"},
        {RP, "Rheinland-Pfalz", "RP"},
        {SL, "Saarland", "SL"},
        {SN, "Sachsen", "SN"},
        {ST, "Sachsen-Anhalt", "ST"},
        {SH, "Schleswig-Holstein", "SH"},
        {TH, "Th\xFCringen", "TH"},
    };
    for (const auto& row : rows)
        m_names.emplace(row.land, NameAndAbreviation(row.name, row.abbreviation));
}

const BundesLand* Bundeslaender::getBundesLandConstants()
{
    return bundesLandConst;
}

BundesLand Bundeslaender::mapBundesLandId2BundeLand(BundesLandId id)
{
    if (id == XXId)
        return XX;
    if (id >= BWId && id <= THId)
        return static_cast<BundesLand>(1 << (id - 1));
    return Alle;
}

BundesLand Bundeslaender::getBundesLand(const char* name) const
{
    if (!name)
        return XX;
    for (const auto& entry : m_names)
        if (entry.second.m_name == name)
            return entry.first;
    return XX;
}

const std::string& Bundeslaender::getName(BundesLand land, bool fullName) const
{
    const auto found = m_names.find(land);
    if (found == m_names.end()) {
        static const std::string errorMsg("Fehler"); // thread-safe first use
        return errorMsg;
    }
    return fullName ? found->second.m_name : found->second.m_abreviation;
}
