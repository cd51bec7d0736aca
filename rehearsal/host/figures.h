#pragma once

#include "framedoctor.h"

/// A figure of the technician's strip.
struct Figure
{
    QString name;
    QString value;
    QString explanation;
};

/// The figures of a zone, which people count from 1; always as many and in the same order.
QList<Figure> figuresOf(int zone, const FrameHistory &history, const Conditions &conditions);
