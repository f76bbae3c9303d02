#ifndef OPTIONDEFINITIONS_H
#define OPTIONDEFINITIONS_H

#include "exporter/exportoptions.h"

#include <QCommandLineOption>
#include <QList>

/// The options with their help texts.
struct OptionDefinitions
{
    static constexpr int minSize = 64; ///< Pixels.
    static constexpr int maxSize = maxPictureSize;
    static constexpr double minSide = 1.0;    ///< Millimetres.
    static constexpr double maxSide = 5000.0; ///< Below 200 inches, the maximum side of a PDF page.
    static constexpr double minMaxError = 0.0001;
    static constexpr double maxMaxError = 90.0;
    static constexpr int maxJobs = 1024;
    static constexpr int maxInputLimit = 1024; ///< MiB.

    QCommandLineOption formats{
        {QStringLiteral("f"), QStringLiteral("formats")},
        QStringLiteral("The formats to write, separated by commas: %1. csv is the "
                       "keyframe table, gauge a gauge file in the current form. "
                       "json, xml and h are the needle's angles as a table, html is a page with "
                       "a needle that moves. Default: png.")
            .arg(exportFormatNames()),
        QStringLiteral("list")};
    QCommandLineOption output{{QStringLiteral("o"), QStringLiteral("output")},
                              QStringLiteral("Write to this folder, which is created if it is missing. "
                                             "Default: the folder of each gauge."),
                              QStringLiteral("folder")};
    QCommandLineOption to{
        QStringLiteral("to"),
        QStringLiteral("The name of the output file, for one gauge in one format and one size. "
                       "Its suffix sets the format unless --formats is given."),
        QStringLiteral("file")};
    QCommandLineOption size{
        {QStringLiteral("s"), QStringLiteral("size")},
        QStringLiteral("The width and height of the pictures in pixels, from %1 to %2. Separate "
                       "several sizes by commas. Default: 512.")
            .arg(minSize)
            .arg(maxSize),
        QStringLiteral("pixels")};
    QCommandLineOption nameTemplate{
        {QStringLiteral("n"), QStringLiteral("name-template")},
        QStringLiteral("The names of the files without their suffix. {name} stands for the gauge's name, "
                       "{size} for the picture's size. Default: {name}, or {name}-{size} for several sizes."),
        QStringLiteral("template")};
    QCommandLineOption layers{
        {QStringLiteral("l"), QStringLiteral("layers")},
        QStringLiteral("Export only these layers, given by name or by number. The bottom "
                       "layer is number 1. Separate several by commas or repeat the "
                       "option. \"Needle*\" is every layer whose name begins so."),
        QStringLiteral("list")};
    QCommandLineOption split{
        QStringLiteral("split"),
        QStringLiteral("Split pictures into -face, -needle and -cover. The list names the consecutive layers "
                       "that make the needle, as for --layers. "
                       "The needle is turned to 12 o'clock. Repeat the option for several needles."),
        QStringLiteral("list")};
    QCommandLineOption needleAngle{
        QStringLiteral("needle-angle"),
        QStringLiteral("The angle at which the needle of --split is drawn, clockwise from 12 o'clock. For "
                       "several needles repeat the option in the order of --split. Default: the angle of the "
                       "first tick of the needle's first layer."),
        QStringLiteral("degrees")};
    QCommandLineOption scale{
        QStringLiteral("scale"),
        QStringLiteral(
            "The layers whose scales become tables of angles, as for --layers. NAME=LAYER,LAYER joins "
            "layers into one table of this name. Repeat the option for several tables. Default: all "
            "layers whose labels are shown."),
        QStringLiteral("layers")};
    QCommandLineOption maxError{
        QStringLiteral("max-error"),
        QStringLiteral(
            "By how many degrees straight lines between the points of a table depart from the scale at "
            "most, from %1 to %2. Default: %3.")
            .arg(QString::number(minMaxError, 'g'), QString::number(maxMaxError),
                 QString::number(ExportOptions().maxError)),
        QStringLiteral("degrees")};
    QCommandLineOption textAsPaths{
        QStringLiteral("text-as-paths"),
        QStringLiteral("Draw the labels of SVG and PDF pictures as paths, which need no font.")};
    QCommandLineOption mm{QStringLiteral("mm"),
                          QStringLiteral("The printed width and height of the pictures in millimetres, from "
                                         "%1 to %2.")
                              .arg(minSide)
                              .arg(maxSide),
                          QStringLiteral("length")};
    QCommandLineOption dpi{
        QStringLiteral("dpi"),
        QStringLiteral(
            "The density of the pictures in pixels per inch. With --mm it sets the size in pixels."),
        QStringLiteral("density")};
    QCommandLineOption background{
        {QStringLiteral("b"), QStringLiteral("background")},
        QStringLiteral("The colour below the pictures: a name, #rgb, #rrggbb or #aarrggbb. With --split only "
                       "the face has it, except in a JPEG. Default: transparent."),
        QStringLiteral("colour")};
    QCommandLineOption quality{
        QStringLiteral("quality"),
        QStringLiteral("The quality of JPEG and WebP files, from 0 (smallest) to %1 (best). Default: %2.")
            .arg(maxQuality)
            .arg(ExportOptions().quality),
        QStringLiteral("number")};
    QCommandLineOption byteOrder{
        QStringLiteral("byte-order"),
        QStringLiteral(
            "The order of the two bytes of a pixel in RGB565 files: little or big. Default: little."),
        QStringLiteral("order")};
    QCommandLineOption noCrop{
        QStringLiteral("no-crop"),
        QStringLiteral(
            "Do not crop the needles and covers of --split in RGB565 and C files to their marks.")};
    QCommandLineOption compression{
        QStringLiteral("compression"),
        QStringLiteral(
            "The compression of PNG files, from 0 (none) to %1 (smallest files, slowest). Default: %2.")
            .arg(maxCompression)
            .arg(defaultCompression),
        QStringLiteral("level")};
    QCommandLineOption jobs{{QStringLiteral("j"), QStringLiteral("jobs")},
                            QStringLiteral("The number of gauges to export at the same time, up to %1. "
                                           "Default: one per core.")
                                .arg(maxJobs),
                            QStringLiteral("count")};
    QCommandLineOption overwrite{QStringLiteral("overwrite"), QStringLiteral("Replace files that exist.")};
    QCommandLineOption keep{QStringLiteral("keep"),
                            QStringLiteral("Keep files that exist. This is not an error.")};
    QCommandLineOption dryRun{
        QStringLiteral("dry-run"),
        QStringLiteral("Read and check the gauges and print the names of the files that "
                       "would be written, but write nothing.")};
    QCommandLineOption quiet{{QStringLiteral("q"), QStringLiteral("quiet")},
                             QStringLiteral("Print only errors.")};
    QCommandLineOption tickLimit{
        QStringLiteral("tick-limit"),
        QStringLiteral("Refuse a gauge with more ticks and arcs than this. Default: %1.")
            .arg(ExportOptions().tickLimit),
        QStringLiteral("count")};
    QCommandLineOption inputLimit{
        QStringLiteral("input-limit"),
        QStringLiteral("Refuse a gauge file larger than this, in MiB, up to %1. Default: %2.")
            .arg(maxInputLimit)
            .arg(ExportOptions().inputLimit),
        QStringLiteral("size")};

    [[nodiscard]] QList<QCommandLineOption> all() const
    {
        return {formats,  output,      to,   size,   nameTemplate, layers,    split,      needleAngle, scale,
                maxError, textAsPaths, mm,   dpi,    compression,  jobs,      background, byteOrder,   noCrop,
                quality,  overwrite,   keep, dryRun, quiet,        tickLimit, inputLimit};
    }
};

#endif
