// Defect: mismatched allocation/deallocation.
// An array allocated with new[] is released with scalar delete,
// and a block from malloc() is released with delete.
#include <cstdio>
#include <cstdlib>

namespace samples {

struct Point {
    int x = 0;
    int y = 0;
};

Point *make_points(int n)
{
    return new Point[n];
}

void drop_points(Point *p)
{
    delete p;                   // should be delete[]
}

void drop_raw(int *p)
{
    delete p;                   // memory came from malloc()
}

} // namespace samples

int main()
{
    samples::Point *pts = samples::make_points(4);
    pts[3].x = 5;
    std::printf("last x = %d\n", pts[3].x);
    samples::drop_points(pts);

    int *raw = static_cast<int *>(std::malloc(sizeof(int)));
    *raw = 1;
    samples::drop_raw(raw);
    return 0;
}
