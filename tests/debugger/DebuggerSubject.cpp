// A program for the test of the pretty-printers: gdb stops it in Stop and prints what its caller holds.

#include "vorlane/VorlaneCore.h"

extern "C" void Stop() {}

int main()
{
    CString text("two words");
    CArray<int, int> numbers;
    numbers.SetSize(3, 0);
    CMap<int, int, CString, CString const&> names;
    Spatia::Point3d point(1, -2.5, 3);
    Vorlane::QuadraticMatrix matrix(2);

    for (int i = 0; i < 3; ++i) {
        numbers[i] = 10 * (i + 1);
    }
    names.SetAt(2, "two");
    names.SetAt(1, "one");
    matrix(0, 0) = 1;
    matrix(0, 1) = matrix(1, 0) = 0.5;
    matrix(1, 1) = 2;
    Stop();
    return text.IsEmpty() ? 1 : 0;
}
