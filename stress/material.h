#pragma once

// What an element of the seam carries: stress from strain for the six in-seam materials and the
// open entry. Strain is convergence over seam thickness.

#include "base/result.h"
#include "stress/model.h"

#include <cmath>

namespace tessaran::stress {

// Where a code of an element map leads.
struct CodeMeaning {
    enum class Kind { material, open, invalid };
    Kind kind = Kind::invalid;
    int material = -1;   // index into the model's materials
    int errorNumber = 0; // of the refusal: 1, 2 or 5
    int integerCode = 0; // the number that the message names
};

// A letter gives 'A' = 0 ...; any other character its own code less 22, so that '0' is 26 and '1',
// the open entry, is 27.
CodeMeaning meaningOf(char code, int materialCount);

// The message of a refused code; i and j from 1.
std::string codeRefusal(const CodeMeaning& meaning, int i, int j);

// Stress at a strain. Comparisons are strict: at a break the upper branch holds.
double elementStress(const Material& material, double strain);

// An open entry whose roof has met its floor carries a tenth of the new contact stress and nine
// tenths of the one before, which keeps the iteration stable. 0 up to a strain of 1.
inline double contactStress(double modulus, double strain, double before) {
    return strain > 1.0 ? 0.1 * modulus * (strain - 1.0) + 0.9 * before : 0.0;
}

// Strain at a stress on the rising branch. A stress above the peak has none and is an error.
base::Result<double> strainSofteningStrain(const Material& material, double stress);
base::Result<double> elasticPlasticStrain(const Material& material, double stress);

// What makes a material unusable (a peak strain or gob factor of 0, ...); empty when it can be
// used.
std::string materialFault(const Material& material);

} // namespace tessaran::stress
