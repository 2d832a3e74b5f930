#pragma once

#include "appcore/sizes/SizeDisplay.h"

#include <QAbstractItemModel>
#include <cstdint>
#include <string>
#include <vector>

namespace sweeply {

/// An item of a list in sections. Its texts may be strangers'.
struct ListedItem {
    std::string path;
    std::uint64_t size = 0;   ///< bytes
    std::string note;         ///< what is to be said of it beside that
    std::uint32_t number = 0; ///< by which whoever made the list knows it
};

/// A part of a list, with its figures: they may be known before the items are.
struct ListedSection {
    std::string title;
    std::uint64_t count = 0;
    std::uint64_t size = 0; ///< bytes
    std::string note = {};
    std::vector<ListedItem> items = {};
};

/// A list in sections for Qt's views, read-only: the sections are its rows, their items are below them. Main thread.
class SectionModel final : public QAbstractItemModel {
  public:
    enum Column { Name, Count, Size, Note, ColumnCount };

    explicit SectionModel(SizeUnits units) : m_units(units) {}

    void setSections(std::vector<ListedSection> sections);
    [[nodiscard]] const std::vector<ListedSection>& sections() const { return m_sections; }
    /// nullptr for a section.
    [[nodiscard]] const ListedItem* itemAt(const QModelIndex& index) const;

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& index) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    const SizeUnits m_units;
    std::vector<ListedSection> m_sections;
};

} // namespace sweeply
