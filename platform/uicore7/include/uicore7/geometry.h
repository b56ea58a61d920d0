#pragma once
// Small value types of the drawing base: points, sizes and rectangles.
#include <algorithm>

namespace uicore7 {

template <class T> struct point
{
    T x{};
    T y{};

    point() = default;
    point(T px, T py) : x(px), y(py) {}
    bool operator==(const point& o) const { return x == o.x && y == o.y; }
    bool operator!=(const point& o) const { return !(*this == o); }
};

template <class T> struct size
{
    T width{};
    T height{};

    size() = default;
    size(T w, T h) : width(w), height(h) {}
    bool operator==(const size& o) const { return width == o.width && height == o.height; }
    bool operator!=(const size& o) const { return !(*this == o); }
};

// A rectangle by its four edges; width is right - left. Nothing forces
// left <= right: call normalize() on a rectangle built from two corners.
template <class T> struct rectangle
{
    T left{};
    T top{};
    T right{};
    T bottom{};

    rectangle() = default;
    rectangle(T l, T t, T r, T b) : left(l), top(t), right(r), bottom(b) {}
    template <class U> static rectangle from(const rectangle<U>& o)
    {
        return rectangle(static_cast<T>(o.left), static_cast<T>(o.top), static_cast<T>(o.right),
                         static_cast<T>(o.bottom));
    }

    T width() const { return right - left; }
    T height() const { return bottom - top; }
    bool empty() const { return !(left < right) || !(top < bottom); }

    rectangle& normalize()
    {
        if (right < left)
            std::swap(left, right);
        if (bottom < top)
            std::swap(top, bottom);
        return *this;
    }
    rectangle normalized() const
    {
        rectangle r(*this);
        return r.normalize();
    }

    // Edges included: a point on the right or bottom edge is inside.
    bool contains(T x, T y) const { return x >= left && x <= right && y >= top && y <= bottom; }
    bool contains(const point<T>& p) const { return contains(p.x, p.y); }

    bool intersects(const rectangle& o) const
    {
        return left < o.right && o.left < right && top < o.bottom && o.top < bottom;
    }
    rectangle intersection(const rectangle& o) const
    {
        rectangle r(std::max(left, o.left), std::max(top, o.top), std::min(right, o.right),
                    std::min(bottom, o.bottom));
        if (r.right < r.left)
            r.right = r.left;
        if (r.bottom < r.top)
            r.bottom = r.top;
        return r;
    }
    rectangle& offset(T dx, T dy)
    {
        left += dx;
        right += dx;
        top += dy;
        bottom += dy;
        return *this;
    }
    rectangle& inflate(T dx, T dy)
    {
        left -= dx;
        right += dx;
        top -= dy;
        bottom += dy;
        return *this;
    }

    bool operator==(const rectangle& o) const
    {
        return left == o.left && top == o.top && right == o.right && bottom == o.bottom;
    }
    bool operator!=(const rectangle& o) const { return !(*this == o); }
};

// A rectangle in whole pixels of a view, as the view lays it out (the
// coordinates of the view it came from, not of the desktop). Views hand these
// to models for things they drew, such as an in-cell button.
template <class T> struct screen_rectangle : rectangle<T>
{
    using rectangle<T>::rectangle;
    screen_rectangle() = default;
    screen_rectangle(const rectangle<T>& r) : rectangle<T>(r) {}
};

} // namespace uicore7
