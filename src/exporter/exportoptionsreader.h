#ifndef EXPORTOPTIONSREADER_H
#define EXPORTOPTIONSREADER_H

#include "exporter/optiondefinitions.h"
#include "tools/optionsreader.h"

/// Turns the values of the options into ExportOptions. Only the first error is kept.
class ExportOptionsReader : public OptionsReader
{
public:
    /// Keeps a reference to @a definitions.
    ExportOptionsReader(const QCommandLineParser &parser, const OptionDefinitions &definitions);

    [[nodiscard]] const ExportOptions &options() const { return m_options; }

private:
    void readFormats();
    void readSizes();
    void readDimensions();
    void readNameTemplate();
    void readFiles();
    void readOutputFile();
    void readStandardInput();
    void readNeedles();
    void readBackground();
    void readScales();
    void readOtherOptions();
    void addFormat(const QString &name);
    [[nodiscard]] bool makesOneFile() const;
    [[nodiscard]] bool makesPictures() const;
    [[nodiscard]] bool splitsPictures() const { return makesPictures() && !m_options.needles.isEmpty(); }
    [[nodiscard]] double readLength(const QCommandLineOption &option);
    void checkSize(double size);

    const OptionDefinitions &m_definitions;
    ExportOptions m_options;
};

#endif
