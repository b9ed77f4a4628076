#include "store/office/SampleNames.h"

namespace SampleNames {

namespace {

using Texts = QStringView[];

constexpr Texts IrishFirst = {u"Aoife",   u"Ciarán", u"Niamh",   u"Seán",  u"Róisín", u"Pádraig",
                              u"Sinéad",  u"Oisín",  u"Gráinne", u"Conor", u"Máire",  u"Eoin",
                              u"Siobhán", u"Declan", u"Orla",    u"Fionn"};
constexpr Texts IrishLast = {u"O'Neill",       u"Murphy",     u"Ní Bhriain",  u"O'Sullivan", u"Byrne",
                             u"Ó Dálaigh",     u"Kavanagh",   u"Fitzgerald",  u"MacMahon",   u"Quinlan",
                             u"O'Shaughnessy", u"Breathnach", u"Doyle",       u"Tierney",    u"Ó hUiginn",
                             u"Gallagher",     u"Nolan",      u"Mac an tSaoi"};
constexpr Texts EnglishFirst = {u"Alice",     u"Oliver", u"Mary-Jane", u"Thomas", u"Grace",
                                u"Henry",     u"Isla",   u"George",    u"Poppy",  u"Edward",
                                u"Charlotte", u"Bryn",   u"Imogen",    u"Rhys"};
constexpr Texts EnglishLast = {u"Taylor",   u"Featherstonehaugh", u"Llewellyn",   u"Hughes",  u"Wright",
                               u"Fraser",   u"Pritchard",         u"Smith-Jones", u"MacLeod", u"Baker",
                               u"Ashworth", u"Iggulden",          u"Underhill",   u"Xavier"};
constexpr Texts GermanFirst = {u"Jürgen", u"Anke",     u"Björn", u"Käthe", u"Hans-Jörg", u"Sabine", u"Götz",
                               u"Ulrike", u"Matthias", u"Heike", u"Jörn",  u"Renate",    u"Uwe",    u"Zoë"};
constexpr Texts GermanLast = {
    u"Müller", u"Schröder", u"Weiß", u"Özdemir", u"von der Heydt", u"Krämer", u"Böhm", u"Schultze-Naumburg",
    u"Jäger",  u"Hoffmann", u"Groß", u"Ärmel",   u"Vogt",          u"Zöller"};
constexpr Texts PolishFirst = {u"Łukasz",    u"Małgorzata",  u"Paweł",  u"Agnieszka",
                               u"Grzegorz",  u"Świętosława", u"Michał", u"Bożena",
                               u"Stanisław", u"Zofia",       u"Żaneta", u"Jędrzej"};
constexpr Texts PolishLast = {u"Wiśniewski", u"Wójcik",   u"Kowalczyk", u"Dąbrowska",           u"Żuraw",
                              u"Źrebiec",    u"Szczęsny", u"Łapiński",  u"Brzęczyszczykiewicz", u"Nowak",
                              u"Śliwa",      u"Gołąb"};
constexpr Texts CzechFirst = {u"Jiří",    u"Zdeňka", u"Ondřej", u"Šárka",  u"Václav",  u"Květa",
                              u"Bořivoj", u"Růžena", u"Matěj",  u"Eliška", u"Čestmír", u"Anežka"};
constexpr Texts CzechLast = {u"Dvořák", u"Nováková",   u"Šťastný", u"Čapek",  u"Růžičková", u"Žižka",
                             u"Kříž",   u"Doležalová", u"Hájek",   u"Švejda", u"Řehoř",     u"Veselá"};
constexpr Texts SwedishFirst = {u"Åsa",      u"Göran", u"Märta",  u"Sven-Åke", u"Linnéa", u"Östen",
                                u"Birgitta", u"Håkan", u"Jörgen", u"Elin",     u"Ängla",  u"Torbjörn"};
constexpr Texts SwedishLast = {u"Ångström", u"Öberg",     u"Lindqvist", u"Sjöstrand", u"Hägglund", u"Wrangel",
                               u"Åkerblom", u"Bergström", u"Älvestad",  u"Nyström",   u"Löfgren",  u"Dahl"};
constexpr Texts FrenchFirst = {u"François", u"Zoé",  u"Jean-Loup", u"Éloïse", u"Benoît", u"Maëlle",
                               u"Hélène",   u"Gaël", u"Océane",    u"Rémi",   u"Anaïs",  u"Noël"};
constexpr Texts FrenchLast = {u"d'Artois",  u"Lefèvre",  u"Ménard",  u"L'Hôpital",
                              u"Béranger",  u"Dubois",   u"Garçon",  u"Étienne",
                              u"Châtelain", u"Fontaine", u"Œuvrard", u"de La Tour"};
constexpr Texts SpanishFirst = {u"Íñigo", u"María José", u"Jesús", u"Begoña", u"Ángel", u"Concepción",
                                u"Raúl",  u"Lucía",      u"Iván",  u"Ainhoa", u"Óscar", u"Núria"};
constexpr Texts SpanishLast = {u"Núñez",      u"García López", u"Ibáñez", u"Muñoz",
                               u"Echeverría", u"Pérez",        u"Ávila",  u"Güell",
                               u"Ordóñez",    u"de la Peña",   u"Úbeda",  u"Zúñiga"};
constexpr Texts PortugueseFirst = {u"João", u"Conceição", u"António", u"Inês",   u"Estêvão", u"Graça",
                                   u"Luís", u"Fátima",    u"Simão",   u"Leonor", u"Ângelo",  u"Zélia"};
constexpr Texts PortugueseLast = {u"Gonçalves", u"Araújo",    u"Magalhães", u"d'Almeida",
                                  u"Simões",    u"Conceição", u"Guimarães", u"Távora",
                                  u"Lourenço",  u"Brandão",   u"Época",     u"Veríssimo"};
constexpr Texts ItalianFirst = {u"Niccolò", u"Chiara", u"Gian Luca", u"Lucìa",  u"Giosuè", u"Serena",
                                u"Matteo",  u"Noè",    u"Fiammetta", u"Ettore", u"Ilaria", u"Ugo"};
constexpr Texts ItalianLast = {u"D'Angelo",    u"Dell'Acqua", u"Nicolò",     u"Bianchi",
                               u"Quattrocchi", u"Cantù",      u"Forlì",      u"De' Medici",
                               u"Zampieri",    u"Esposito",   u"Lo Giudice", u"Verdi"};
constexpr Texts HungarianFirst = {u"Győző", u"Zsófia", u"Örs",     u"Katalin", u"Balázs", u"Tünde",
                                  u"Ákos",  u"Ildikó", u"Szilárd", u"Ünige",   u"Lőrinc", u"Éva"};
constexpr Texts HungarianLast = {u"Szőke", u"Kovács", u"Őri",    u"Vörösmarty", u"Tűzkő", u"Nagy",
                                 u"Ányos", u"Erdős",  u"Zrínyi", u"Győri",      u"Szűcs", u"Ügyes"};
constexpr Texts GreekFirst = {u"Dimitra", u"Giorgos", u"Eleftheria", u"Nikos",   u"Panagiota",
                              u"Stavros", u"Xanthi",  u"Thanasis",   u"Kyriaki", u"Ioannis"};
constexpr Texts GreekLast = {u"Papadopoulos", u"Xenakis", u"Angelopoulou", u"Mavromatis", u"Theodorakis",
                             u"Kazantzi",     u"Psarros", u"Ioannidou",    u"Zografos",   u"Vlachopoulou"};
constexpr Texts DutchFirst = {u"Daniël", u"Fenna",    u"Jan-Willem", u"Renée", u"Joost",
                              u"Noémie", u"IJsbrand", u"Liesbeth",   u"Thijs", u"Anniek"};
constexpr Texts DutchLast = {u"van 't Hoff", u"de Vries", u"Coëlho",     u"ten Boom", u"van den Heuvel",
                             u"IJzerman",    u"Bakker",   u"in 't Veld", u"Quist",    u"Yntema"};

constexpr SampleLanguage AllLanguages[] = {
    {u"Irish", IrishFirst, IrishLast},
    {u"English", EnglishFirst, EnglishLast},
    {u"German", GermanFirst, GermanLast},
    {u"Polish", PolishFirst, PolishLast},
    {u"Czech", CzechFirst, CzechLast},
    {u"Swedish", SwedishFirst, SwedishLast},
    {u"French", FrenchFirst, FrenchLast},
    {u"Spanish", SpanishFirst, SpanishLast},
    {u"Portuguese", PortugueseFirst, PortugueseLast},
    {u"Italian", ItalianFirst, ItalianLast},
    {u"Hungarian", HungarianFirst, HungarianLast},
    {u"Greek", GreekFirst, GreekLast},
    {u"Dutch", DutchFirst, DutchLast},
};

constexpr Texts AllNotes = {
    u"Works Tuesdays and Thursdays only",
    u"Speaks Polish, Czech and English",
    u"Don't send before 9:00",
    u"Deputy for the night shift",
    u"On parental leave until autumn",
    u"Second key holder of the store room",
    u"First aider\r\nFire warden on floor 2",
    u"Prefers a call; texts for urgent matters",
    u"50% at the depot, 50% in the office",
    u"Drives the van \"Ida\"",
};

constexpr Texts AllDepartments = {u"Management", u"Sales",     u"Support", u"Warehouse",
                                  u"Transport",  u"Reception", u"Finance", u"R&D"};
constexpr Texts AllGroups = {u"Management", u"Sales",     u"Support", u"Warehouse",
                             u"Drivers",    u"Reception", u"Finance", u"On call"};
constexpr Texts AllTails = {u"Corrib & Lyne", u"Corrib & Lyne Support Desk",
                            u"Please don't reply to this number"};

}  // namespace

std::span<const SampleLanguage> Languages() {
    return AllLanguages;
}
std::span<const QStringView> Notes() {
    return AllNotes;
}
std::span<const QStringView> Departments() {
    return AllDepartments;
}
std::span<const QStringView> Groups() {
    return AllGroups;
}
std::span<const QStringView> Tails() {
    return AllTails;
}

}  // namespace SampleNames
