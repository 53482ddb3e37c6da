#ifndef VORLANE_NUMERICS_WIDEREGISTERSINTERNAL_H
#define VORLANE_NUMERICS_WIDEREGISTERSINTERNAL_H

/// \file
/// Registers of four doubles, which the library uses where the processor has them (AVX2). There is no fused
/// multiply-add among their instructions, so code gives the same bits in them as in narrow ones.
/// VORLANE_NARROW leaves all of it out.

#if defined(__x86_64__) && !defined(VORLANE_NARROW)
#define VORLANE_HAVE_WIDE
/// A function that is compiled for wide registers with all that it calls: for calls behind HasWideRegisters()
/// only.
#define VORLANE_WIDE __attribute__((target("avx2"), flatten))
#else
#define VORLANE_WIDE
#endif

namespace Vorlane {

inline bool HasWideRegisters()
{
#ifdef VORLANE_HAVE_WIDE
    return __builtin_cpu_supports("avx2") != 0;
#else
    return false;
#endif
}

template <typename Work>
VORLANE_WIDE auto RunWide(Work const& work)
{
    return work();
}

/// Gives work(), compiled for both kinds of registers.
template <typename Work>
auto RunInWidestRegisters(Work const& work)
{
    return HasWideRegisters() ? RunWide(work) : work();
}

} // namespace Vorlane

#endif
