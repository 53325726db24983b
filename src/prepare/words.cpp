// The tables hold words as `plain` leaves them, each once, behind the code of the first language
// that has it (a code has a colon, and so is no word); the compiler checks that.
#include "prepare/words.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>

namespace qob {
namespace {

constexpr bool is_plain(char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); }

using enum Field;

struct Row {
  Field field;
  std::string_view words;
};

constexpr std::array<std::string_view, kFields> kNames = {
    "identifier", "sire", "dam", "sex", "birth", "ebv", "matings", "name", "alive", "herd"};

// What goes with the word for an animal, a parent or a herd: "animal id", "N° père", "CHR nr.".
constexpr std::string_view kIds = "id ids ident identifier identification identity idcode";
constexpr std::string_view kNumbers =
    "number nr no n num nbr nummer numero nro code kode codigo cod";

constexpr Row kHeadings[] = {
    {kIdentifier, kIds},
    {kIdentifier, R"(en: animal animals anim indiv ind individual iid ego uid uniqueid
        uniqueidentifier stud studbookid studbookno studbooknr studbooknumber registrationnumber
        registrationno registrationid regno regnr regnumber regid herdbookno herdbooknumber
        herdbookid herdbooknr flockbookno flockbooknumber pedigreenumber pedigreeno eartag
        nationalid officialid lifenumber lifeno ueln interbullid de: tier lom lebensnummer
        lebensnr lebensohrmarke lebensohrmarken ohrmarke ohrmarken omnr zuchtbuchnummer
        zuchtbuchnr zbnr zbnummer herdbuchnummer herdbuchnr hbnr hbnummer identifikation
        identifikations fr: numeronational nonational nnational nunati boucle numerodeboucle
        identifiant individu numerodidentification matricule es: crotal arete caravana
        numerodecrotal numerodearete individuo identificacion identificador
        numerodeidentificacion nl: levensnummer levensnr oornummer oormerk dier identificatie
        stamboeknummer stamboeknr da: oremaerke oeremaerke ckr dyr dyre individ stambogsnummer
        stambogsnr)"},
    {kSire, R"(en: sire sires ofsire ofthesire father fathers offather dad pat paternalid
        maleparent de: vater vaters desvaters vaeter vatertier vatertiers fr: pere dupere
        es: padre delpadre nl: vader vaders vanvader vandevader vaderdier da: far fars faren
        faderen fader)"},
    {kDam, R"(en: dam dams ofdam ofthedam mother mothers ofmother mom mat maternalid femaleparent
        de: mutter mutters dermutter muttertier muttertiers fr: mere delamere es: madre delamadre
        nl: moeder moeders vanmoeder vandemoeder moederdier da: mor mors moren moderen moder)"},
    {kSex, R"(en: sex gender sexcode de: geschlecht geschl fr: sexe es: sexo nl: geslacht da: kon
        koen)"},
    {kBirth, R"(en: birth born bornon dob birthdate birthdt birthday bday bdate dateofbirth
        dateborn birthyear birthyr byear yob yearofbirth yearborn hatched hatchdate foaled
        de: geburt geburtsdatum geburtsdat geburtstag geburtsjahr gebdatum gebdat gebtag gebjahr
        geb gebam geboren geborenam jahrgang schlupf schlupfdatum wurfdatum wurftag fr: naissance
        datenaissance datedenaissance datenaiss anneenaissance anneedenaissance nele neele
        es: nacimiento fechanacimiento fechadenacimiento fechanac fecnac fnac anonacimiento
        anodenacimiento nacido nacida nacidoa nl: geboorte geboortedatum geboortejaar geboortedag
        geborenop da: fodsel foedsel fodselsdato foedselsdato fodselsdag foedselsdag fodselsar
        foedselsar fodselsaar foedselsaar fodt foedt)"},
    {kEbv, R"(en: ebv bv gebv gbv breedingvalue estimatedbreedingvalue genomicbreedingvalue blup
        merit totalmerit totalmeritindex tmi netmerit geneticmerit breedingindex selectionindex
        tpi lpi de: zuchtwert zuchtwerte zw gzw gesamtzuchtwert rzg gesamtindex selektionsindex
        fr: nettomerit isu valeurgenetique valeurdelevage indexglobal indexgenetique es: merito
        meritogenetico valorgenetico valordecria indice indicegenetico nl: fokwaarde fokwaarden
        fokwaardes geschattefokwaarde nvi totaalindex da: avlsvaerdi avlsvaerdital avlsindeks
        totalindeks ntm nordictotalmerit)"},
    {kMatings, R"(en: matings maxmatings nmatings maximummatings maxmating nmating
        numberofmatings maxnumberofmatings maximumnumberofmatings nomatings nummatings
        de: paarungen maxpaarungen anzahlpaarungen deckungen maxdeckungen anzahldeckungen
        anpaarungen maxanpaarungen anzahlanpaarungen bedeckungen belegungen fr: saillies
        maxsaillies nbsaillies nombredesaillies accouplements maxaccouplements nbaccouplements
        nombredaccouplements es: apareamientos maxapareamientos numerodeapareamientos cubriciones
        maxcubriciones numerodecubriciones montas nl: paringen maxparingen aantalparingen
        dekkingen maxdekkingen aantaldekkingen da: parringer maxparringer antalparringer
        bedaekninger maxbedaekninger)"},
    {kName, R"(en: name animalname housename callname registeredname de: rufname tiername fr: nom
        nomdelanimal nomanimal es: nombre nombredelanimal nl: naam diernaam da: navn dyrenavn)"},
    {kAlive, R"(en: alive isalive living vitalstatus lifestatus currentstatus alivedead
        aliveordead de: lebend lebt lebtnoch lebendig amleben nochamleben lebensstatus fr: vivant
        vivante envie vivantmort es: vivo viva vivoa vivomuerto estavivo nl: levend leeft inleven
        da: levende ilive)"},
    {kHerd, R"(en: herd herdname flock flockname farm farmname holding location currentlocation
        institution facility zoo premises de: betrieb betriebs bestand bestands herde herden
        zuchtbetrieb fr: troupeau elevage exploitation cheptel es: rebano ganaderia explotacion
        granja finca hato nl: kudde bedrijf bedrijfs ubn da: besaetning besaetnings chr gard
        gaard ejendom flok)"},
};

// A table may have several of these, or mean other things by them: "index" counts rows, too.
constexpr Row kWeakHeadings[] = {
    {kIdentifier, kNumbers},
    {kIdentifier, R"(en: tag animaltag tattoo chip microchip transponder rfid eid vid visualid
        localid gan studbook herdbook registration reg accession ring band brand offspring
        progeny calf lamb foal kid piglet pup chick de: chipnummer transpondernummer kennung
        kennzeichen stallnummer stallnr tatowierung taetowierung tatowiernummer taetowiernummer
        zuchtbuch herdbuch fr: puce transpondeur tatouage numerodetravail notravail es: tatuaje
        registro nl: stamboek werknummer stalnummer)"},
    {kSire, "en: bull ram stallion boar p1 par1 parent1"},
    {kDam, "en: p2 par2 parent2"},
    {kSex, "en: mf fm de: mw nl: mv"},
    {kBirth, "en: year date de: jahr datum fr: annee es: ano fecha nl: jaar da: ar aar dato"},
    {kEbv, "en: value index de: wert da: indeks"},
    {kMatings, "en: mating services maxuse"},
    {kName, "en: label nickname"},
    {kAlive, "en: status fr: statut es: estado"},
    {kHerd, "en: site owner de: stall nl: stal da: stald"},
};

// With such a remark a heading is about another thing than without: "Sire (name)", "EBV (acc.)".
constexpr std::string_view kOtherThings =
    "name nom nombre naam navn accuracy acc reliability rel se sd rank rang sicherheit si";

// Signs that alone say nothing, and abbreviations that without their signs could be names.
constexpr std::u32string_view kSigns = U"0.,-–—−?*/_…";
constexpr std::string_view kAbbreviations =
    "na n/a n.a. na. n.a <na> #n/a #nv #n/d n/d n.d. n/b n.b. k.a. inc. desc.";
// What is also said of a parent ("Vater unbekannt"), and what is not. Studbooks: WILD was caught in
// the wild, MULT has several possible parents.
constexpr std::string_view kUnknown =
    "unknown unbekannt unbek inconnu inconnue desconocido desconocida onbekend ukendt notknown";
constexpr std::string_view kMissing =
    "unk unkn null none nil nan missing notavailable notrecorded wild mult keineangabe "
    "nichtbekannt nonconnu nonrenseigne sindato sindatos noconocido onb nietbekend ikkekendt "
    "uoplyst";

struct SexRow {
  SexWord means;
  std::string_view words;
};

constexpr SexWord kUnsexed = {0, false}, kMale = {1, false}, kFemale = {2, false};
constexpr SexWord kMaleCastrated = {1, true}, kFemaleCastrated = {2, true};

// Left out, as they mean both: "h" (Spanish hembra, Danish han), "stud" (Danish ox), "mouton".
// Breeders of birds and zoos write 1.0 for a male, 0.1 for a female, 0.0.1 for neither.
constexpr SexRow kSexes[] = {
    {kUnsexed, R"(en: x u 001 und indet undetermined indeterminate unsexed de: unbestimmt
        fr: indetermine es: indeterminado nl: onbepaald)"},
    {kMale, R"(en: m 1 10 male males bull ram stallion colt boar buck billy rooster cock cockerel
        stag de: mannlich maennlich mannl maennl bulle stier jungbulle zuchtbulle widder bock
        hengst eber hahn rude ruede rammler kater erpel ganter hengstfohlen bullenkalb
        fr: masculin taureau belier etalon verrat bouc coq poulain es: macho masculino toro
        carnero morueco semental verraco gallo potro ternero nl: mannelijk man beer haan reu bok
        da: han handyr hanlig hankon hankoen tyr vaedder orne buk hane hanhund)"},
    {kFemale, R"(en: f 2 01 20 female females fem cow heifer ewe mare filly sow gilt doe nanny
        hen pullet bitch hind de: w weiblich weibl kuh farse faerse kalbin aue mutterschaf zibbe
        stute sau jungsau ziege geiss henne hundin huendin stutfohlen kuhkalb hasin haesin
        fr: femelle feminin vache genisse brebis agnelle jument pouliche truie chevre poule
        chienne es: hembra femenino vaca novilla oveja yegua cerda cabra gallina potra ternera
        perra nl: v vrouwelijk vrouw koe vaars ooi merrie zeug geit teef da: hun hundyr hunlig
        hunkon hunkoen ko kvie hoppe so gylt ged hone hoene tispe taeve)"},
    {kMaleCastrated, R"(en: mc mn ox steer bullock wether gelding barrow capon de: ochse ochs
        hammel wallach borg kapaun fr: boeuf hongre chapon es: buey nl: os ruin burg barg hamel
        da: vallak galt bede)"},
    {kFemaleCastrated, "en: fc fs fn"},
};

constexpr std::string_view kCastrated =
    "castrated castrate castr neutered neuter neut spayed sterilised sterilized desexed kastriert "
    "kastr kastrat sterilisiert castre castree castrat sterilise sterilisee castrado castrada "
    "capado gecastreerd gesteriliseerd kastreret steriliseret";

// Whether one of the words, parted by blanks or line ends, passes the test.
template <class Test>
constexpr bool any_word(std::string_view words, Test test) {
  while (!words.empty()) {
    std::size_t end = 0;
    while (end < words.size() && words[end] > ' ') ++end;
    if (end > 0 && words[end - 1] != ':' && test(words.substr(0, end))) return true;
    words.remove_prefix(std::min(end + 1, words.size()));
  }
  return false;
}

constexpr bool contains(std::string_view words, std::string_view text) {
  return any_word(words, [&](std::string_view word) { return word == text; });
}

// Whether `text` is one of the words with a rest, before or behind it, that passes the test.
template <class Test>
bool is_joined(std::string_view words, std::string_view text, Test passes) {
  return any_word(words, [&](std::string_view word) {
    return (text.starts_with(word) && passes(text.substr(word.size()))) ||
           (text.ends_with(word) && passes(text.substr(0, text.size() - word.size())));
  });
}

// The words of tables that are to have none in common.
struct Vocabulary {
  std::array<std::string_view, 700> words = {};
  std::size_t size = 0;
  bool all_plain = true;

  constexpr void add(std::string_view row) {
    any_word(row, [&](std::string_view word) {
      all_plain &= std::all_of(word.begin(), word.end(), is_plain);
      words[size++] = word;
      return false;
    });
  }
  constexpr bool is_sound() {
    const auto end = words.begin() + size;
    std::sort(words.begin(), end);
    return all_plain && std::adjacent_find(words.begin(), end) == end;
  }
};

consteval bool tables_are_sound() {
  Vocabulary headings, cells;
  for (const Row& row : kHeadings) headings.add(row.words);
  for (const Row& row : kWeakHeadings) headings.add(row.words);
  for (const SexRow& row : kSexes) cells.add(row.words);
  for (const std::string_view row : {kCastrated, kUnknown, kMissing}) cells.add(row);
  return headings.is_sound() && cells.is_sound();
}

static_assert(tables_are_sound());

// The heading without its remarks, unless these make it another thing.
std::string essence(std::string_view heading) {
  std::string text, remark;
  bool within = false;
  for (const char c : heading) {
    within |= c == '(' || c == '[';
    (within ? remark : text) += c;
    within &= c != ')' && c != ']';
  }
  return plain(contains(kOtherThings, plain(remark)) ? heading : text);
}

// Whether `text` is one to three (`most`) words for identifiers, for those of parents any.
bool are_identifiers(std::string_view text, bool of_parent, int most = 3) {
  const auto fits = [&](const Row& row) {
    return row.field == kIdentifier && (of_parent || row.words == kIds || row.words == kNumbers) &&
           any_word(row.words, [&](std::string_view word) {
             return text == word ||
                    (most > 1 && text.starts_with(word) &&
                     are_identifiers(text.substr(word.size()), of_parent, most - 1));
           });
  };
  return std::any_of(std::begin(kHeadings), std::end(kHeadings), fits) ||
         std::any_of(std::begin(kWeakHeadings), std::end(kWeakHeadings), fits);
}

std::optional<Field> look_up(std::span<const Row> rows, std::string_view heading) {
  const std::string text = essence(heading);
  for (const Row& row : rows) {
    if (contains(row.words, text)) return row.field;
  }
  for (const Row& row : rows) {
    const bool parent = row.field == kSire || row.field == kDam;
    const auto completes = [&](std::string_view rest) { return are_identifiers(rest, parent); };
    if (!parent && row.field != kIdentifier && row.field != kHerd) continue;
    if (is_joined(row.words, text, completes)) return row.field;
  }
  return std::nullopt;
}

bool is_parent(std::string_view word) {
  return std::any_of(std::begin(kHeadings), std::end(kHeadings), [&](const Row& row) {
    return (row.field == kSire || row.field == kDam) && contains(row.words, word);
  });
}

}  // namespace

std::string_view name_of(Field field) { return kNames[static_cast<std::size_t>(field)]; }

std::optional<Field> field_of(std::string_view heading) { return look_up(kHeadings, heading); }

std::optional<Field> field_perhaps(std::string_view heading) {
  return field_of(heading) ? std::nullopt : look_up(kWeakHeadings, heading);
}

bool says_unknown(std::string_view cell) {
  if (cell.find_first_of("123456789") != cell.npos) return false;  // most cells, at once
  const std::string text = folded(cell);
  bool signs = true;
  for_each_character(text, [&](char32_t c, auto) { signs &= kSigns.find(c) != kSigns.npos; });
  if (signs || contains(kAbbreviations, text)) return true;
  const std::string word = plain(cell);
  return contains(kUnknown, word) || contains(kMissing, word) ||
         is_joined(kUnknown, word, is_parent);
}

std::optional<SexWord> sex_of(std::string_view cell) {
  if (cell.find('?') != cell.npos && !says_unknown(cell)) return std::nullopt;  // a doubt
  const bool male = cell.find("♂") != cell.npos;
  const bool female = cell.find("♀") != cell.npos;
  if (male && female) return std::nullopt;
  const std::string sign = male ? "m" : female ? "f" : "";
  const std::string text = sign + plain(cell);
  const bool counted = text == "10" || text == "01" || text == "20" || text == "001";
  if (counted && cell.find_first_of(".,") == cell.npos) return std::nullopt;
  for (const SexRow& row : kSexes) {
    if (contains(row.words, text)) return row.means;
  }
  if (says_unknown(cell)) return kUnsexed;
  if (text == "spayed") return kFemaleCastrated;
  const auto castrated = [](std::string_view rest) { return contains(kCastrated, rest); };
  if (castrated(text)) return SexWord{0, true};
  for (const SexRow& row : kSexes) {
    if (is_joined(row.words, text, castrated)) return SexWord{row.means.sex, true};
  }
  return std::nullopt;
}

}  // namespace qob
