#pragma once

#include <array>

// A point of the spectral locus: the chromaticity of light of one wavelength (CIE 1931, 2-degree observer).
struct SpectralColor {
  int wavelength;  // in nm
  double x;
  double y;
};

// Every 5 nm from 380 nm to 700 nm; beyond, the locus hardly moves.
extern const std::array<SpectralColor, 65> kSpectralLocus;
