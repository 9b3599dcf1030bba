#pragma once

#include <QDateTime>
#include <QImage>
#include <QList>
#include <QSize>
#include <QString>
#include <optional>
#include <variant>

namespace vantrel {

/// What is known about a file without its content.
struct PreviewFacts {
    QString kind;             ///< a description in the user's language; empty when unknown
    QString iconName;         ///< by freedesktop.org's icon naming; may be empty
    QString genericIconName;  ///< of the kind's family, should there be no icon of the first name
    bool isFolder = false;
    std::optional<quint64> size;  ///< bytes; regular files only
    QDateTime modified;           ///< invalid when unknown
};

struct ImageBody {
    QImage image;    ///< upright, at most as large as was asked for
    QSize fullSize;  ///< pixels, as stored in the file but upright
};

struct TextBody {
    QString text;  ///< lines end with \n; no other control characters but tabs
};

struct PagesBody {
    QList<QImage> pages;  ///< the first ones, in order
    int pageCount = 0;    ///< of the whole document
};

/// What a preview can show of a file. A value, safe to hand from thread to thread.
struct PreviewContent {
    PreviewFacts facts;
    std::variant<std::monostate, ImageBody, TextBody, PagesBody> body;
};

}  // namespace vantrel
