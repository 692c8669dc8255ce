# The transform and the convolver beside plain FFTW, which only this program needs.
find_library(FFTW3F_LIBRARY fftw3f REQUIRED)
zelk_bench(convolver LINKS zelk_wave zelk_eq ${FFTW3F_LIBRARY})
