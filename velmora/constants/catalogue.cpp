#include "velmora/constants/catalogue.h"

#include "velmora/constants/catalan.h"
#include "velmora/constants/e.h"
#include "velmora/constants/gamma.h"
#include "velmora/constants/lemniscate.h"
#include "velmora/constants/log.h"
#include "velmora/constants/pi.h"
#include "velmora/constants/roots.h"
#include "velmora/constants/zeta3.h"

namespace velmora {

namespace {

constexpr AlgorithmEntry NEWTON_ALGORITHMS[] = {
    {"newton", "1st order Newton's Method", "", ""},
};
constexpr AlgorithmEntry E_ALGORITHMS[] = {
    {"exp(1)", "Taylor Series of exp(1)", "", ""},
    {"exp(-1)", "Taylor Series of exp(-1)", "", ""},
};
constexpr AlgorithmEntry PI_ALGORITHMS[] = {
    {"chudnovsky", "Chudnovsky (1988)", "", "Pi - Chudnovsky (1988):"},
    {"ramanujan", "Ramanujan (1910)", "", "Pi - Ramanujan (1910):"},
    {"chudnovsky-reduced", "Chudnovsky (1988)", "(reduced memory)", "Pi - Chudnovsky (1988):"},
    {"ramanujan-reduced", "Ramanujan (1910)", "(reduced memory)", "Pi - Ramanujan (1910):"},
};
constexpr AlgorithmEntry LOG_ALGORITHMS[] = {
    {"machin-primary", "Primary Machin-like Formula (", "", ""},
    {"machin-secondary", "Secondary Machin-like Formula (", "", ""},
};
constexpr AlgorithmEntry ZETA3_ALGORITHMS[] = {
    {"wedeniwski", "Wedeniwski (1998)", "", ""},
    {"az", "Amdeberhan-Zeilberger (1997)", "(slightly slower)", ""},
};
constexpr AlgorithmEntry CATALAN_ALGORITHMS[] = {
    {"pilehrood-short", "Pilehrood (2010-short)", "", "Catalan - Pilehrood (2010-short):"},
    {"guillera2019", "Guillera (2019)", "", ""},
    {"pilehrood-long", "Pilehrood (2010-long)", "", "Catalan - Pilehrood (2010-long):"},
    {"guillera2008", "Guillera (2008)", "", ""},
    {"lupas", "Lupas (2000)", "", ""},
    {"huvent", "Huvent (2006)", "", ""},
};
constexpr AlgorithmEntry LEMNISCATE_ALGORITHMS[] = {
    {"agm-pi", "AGM with Pi", "(Can be very slow on disk.)\nLemniscate = 2 Pi / AGM(1, sqrt(2))\n",
     "Lemniscate - AGM-Pi"},
    {"gauss", "Gauss Formula",
     "(2x slower in ram, may be faster on disk)\nLemniscate = 8 * ArcSinlemn(1/2) + 4 * ArcSinLemn(7/23)\n",
     ""},
    {"sebah", "Sebah's Formula",
     "(20% slower than Gauss)\nLemniscate = 8 * ArcSinlemn(2/3) - 4 * ArcSinLemn(7/137)\n", ""},
};
constexpr AlgorithmEntry GAMMA_ALGORITHMS[] = {
    {"brent-refined", "Brent-McMillan refined, n = 2^k", "", ""},
    {"brent-original", "Brent-McMillan original", "", ""},
};

constexpr const char* SQRT_NOTES[] = {
    "    There are no alternate formulas for square roots. To verify sqrt(n),",
    "    compute sqrt(100*n) instead. The digits will be the same, but shifted",
    "    over by one digit.",
};
constexpr const char* GOLDEN_RATIO_NOTES[] = {
    "    There is no alternate formula for Golden Ratio. However, a verification",
    "    can be done by computing sqrt(125) instead. The digits will be the same,",
    "    but shifted over by one digit.",
};
constexpr const char* PI_NOTES[] = {
    "    Reduced memory algorithms use alternate parameters that require less",
    "    memory at the cost of decreased performance.",
};

constexpr const char* SQRT_NAMES[] = {"sqrt"};
constexpr const char* GOLDEN_RATIO_NAMES[] = {"phi", "goldenratio"};
constexpr const char* E_NAMES[] = {"e"};
constexpr const char* PI_NAMES[] = {"pi"};
constexpr const char* LOG_NAMES[] = {"log"};
constexpr const char* ZETA3_NAMES[] = {"apery", "zeta3", "zeta(3)"};
constexpr const char* CATALAN_NAMES[] = {"catalan"};
constexpr const char* LEMNISCATE_NAMES[] = {"lemniscate"};
constexpr const char* GAMMA_NAMES[] = {"gamma", "brent"};
constexpr const char* CUSTOM_NAMES[] = {"custom"};

constexpr CatalogueEntry ROWS[] = {
    {"Fast Constants:", "sqrt", "Sqrt(n)", "", "  1.46", NEWTON_ALGORITHMS, SQRT_NOTES, SQRT_NAMES,
     &SqrtConstant::make},
    {"", "goldenratio", "Golden Ratio", "1.618034...", "  1.46", NEWTON_ALGORITHMS, GOLDEN_RATIO_NOTES,
     GOLDEN_RATIO_NAMES, &GoldenRatioConstant::make},
    {"", "e", "e", "2.718281...", "  3.88 / 3.88", E_ALGORITHMS, {}, E_NAMES, &EConstant::make},
    {"Moderate Constants:", "pi", "Pi", "3.141592...", "  13.2 / 19.9", PI_ALGORITHMS, PI_NOTES, PI_NAMES,
     &PiConstant::make},
    {"", "log", "Log(n)", "", "> 35.7", LOG_ALGORITHMS, {}, LOG_NAMES, &LogConstant::make},
    {"",
     "zeta3",
     "Zeta(3) (Apery's Constant)",
     "1.202056...",
     "  62.8 / 65.7",
     ZETA3_ALGORITHMS,
     {},
     ZETA3_NAMES,
     &Zeta3Constant::make},
    {"Slow Constants:",
     "catalan",
     "Catalan's Constant",
     "0.915965...",
     "  78.0 / 105.",
     CATALAN_ALGORITHMS,
     {},
     CATALAN_NAMES,
     &CatalanConstant::make},
    {"",
     "lemniscate",
     "Lemniscate Constant",
     "5.244115...",
     "  60.4 / 124. / 154.",
     LEMNISCATE_ALGORITHMS,
     {},
     LEMNISCATE_NAMES,
     &LemniscateConstant::make},
    {"",
     "gamma",
     "Euler-Mascheroni Constant",
     "0.577215...",
     "  383. / 574.",
     GAMMA_ALGORITHMS,
     {},
     GAMMA_NAMES,
     &GammaConstant::make},
    {"Custom Formulas:", "custom", "Custom Formula", "", "", {}, {}, CUSTOM_NAMES, nullptr},
};

}  // namespace

std::span<const CatalogueEntry> catalogue() {
    return ROWS;
}

}  // namespace velmora
