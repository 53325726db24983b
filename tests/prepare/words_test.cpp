// Headings and cells as herd books of six languages have them.
#include "prepare/words.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "support/tables.h"

namespace qob {
namespace {

using test::check;

TEST(Words, HeadingsNameFields) {
  check(
      R"(identifier|Identifier|Animal ID|Stud #|Studbook Number|UniqueID|LOM|HB-Nr.|Tier-Nr
identifier|Ohrmarkennummer|N° national|Crotal|Levensnummer|Øremærkenr.|CKR nr
identifier|Numéro d'identification
perhaps identifier|Nr.|no|Chipnummer|Tattoo No|Local ID|Stallnummer|calf|(x) tag
sire|Sire|SireID|sire_id|VATER|Vater LOM|Vater-Ohrmarke|ID Vater|Nummer des Vaters|N° père|Sire tag
sire|Numéro national du père|Número padre|Vader levensnummer|Fars øremærke nr|VaterNr
perhaps sire|bull|Bull No|Parent 1
dam|dam|dam number|Mother|MUTTER (LOM)|Mère|Madre crotal|Moeder|Mor|Mors CKR-nr.
perhaps dam|p2
sex|sex|Geschlecht (m/w)|Sexe|Sexo|geslacht|Køn|Koen|GENDER
birth|birth|Geb.-Datum|Geburtsdatum (TT.MM.JJJJ)|Birth date [y]|DOB|Jahrgang|Date de naissance
birth|Año de nacimiento|Geboortejaar|Fødselsår|Foedselsdato|Né(e) le
perhaps birth|Year|Année|date
ebv|EBV (kg)|Zuchtwert|Mérito|fokwaarde|Avlsværdi|breeding_value|merit (kg
perhaps ebv|Index
matings|Max. matings|Anpaarungen|Saillies|Cubriciones|Dekkingen|Parringer
name|name|House name|Nom|Nombre|Naam|Navn|Rufname
alive|Alive|Current status|lebt|vivant|vivo|levend|levende
perhaps alive|Status|Estado
herd|Herd|Betriebsnummer|Élevage|Rebaño|Kudde|Besætning|CHR-nr.|Location
perhaps herd|Stall
nothing||?|Vater Name|Sire name|Sire (name)|Name des Vaters|EBV accuracy|EBV (acc.)|Birth weight
nothing|Birth herd|Date of death|Herd of birth|Damage|Abgang|Vater Mutter|Sire sire|Sire EBV|h)",
      [](const std::string& heading) -> std::string {
        if (const auto field = field_of(heading)) return std::string(name_of(*field));
        const auto field = field_perhaps(heading);
        return field ? "perhaps " + std::string(name_of(*field)) : "nothing";
      });
}

TEST(Words, CellsTellTheSex) {
  check(R"(1|m|M.|1|MALE|mâle|Männlich|maennlich|♂|♂️|Bélier|han|1,0|Stier|macho
2|f|2|w|v|Female|♀|Färse|Hündin|hembra|ooi|hun|høne|0.1|brebis
0|x|0||?|unknown|Unbekannt|0.0.1
1 castrated|MN|Ochse|wether|m kastr.|M/castrated|neutered male|♂ kastriert|hongre
2 castrated|FS|spayed|female, neutered|weiblich kastriert|Gecastreerd vrouwelijk
0 castrated|castrated|gecastreerd|KASTRAT
no sex|h|3|stud|mouton|male female|m/f|maybe|0.5|♂♀)",
        [](const std::string& cell) -> std::string {
          const auto word = sex_of(cell);
          if (!word) return "no sex";
          return std::to_string(word->sex) + (word->castrated ? " castrated" : "");
        });
}

TEST(Words, CellsSayUnknown) {
  check(R"(unknown|| |0|0000|0.0|NA|n/a|N. A.|#N/A|-|--|—|–|..|??|*|UNK|Not known|NaN|n.b.|k.A.|MULT
unknown|keine Angabe|Vater unbekannt|ukendt far|Père inconnu|inc.|Desconocida|Onb.|wild
known|x|u|10|0a|A-0|Ka|Inc|Sirena|Vater|李|unknown1|♀)",
        [](const std::string& cell) { return says_unknown(cell) ? "unknown" : "known"; });
}

TEST(Words, TextsAreCompared) {
  EXPECT_EQ(folded(" DE 123\u00a0Ä\t"), "de123ä");
  EXPECT_EQ(folded("ÀÖ×ØÞŸĀĶĹŇŊŶŹŽſİẞ李Ω"), "àö×øþÿāķĺňŋŷźžsiß李Ω");
  for (const char* broken : {"\xff\xc3", "\xe2\x82", "a\xc3z", "\xe0\x81\x81", "\xf0\x9f\x98"}) {
    EXPECT_EQ(folded(broken), broken);
    EXPECT_EQ(says_unknown(broken), false);
  }
  EXPECT_EQ(plain("\ufeffGeb.-Datum"), "gebdatum");
  EXPECT_EQ(plain("Straße ÆŒ Ñandú Ýþ A\u0308 Åø Łódź Žĳ÷ \xe9 9"),
            "strasseaeoenanduythaaolodzzij9");
}

}  // namespace
}  // namespace qob
