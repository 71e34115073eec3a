#include "platform/media/DRMP4Atom.h"

#include "platform/data/DRMutableAbstractData.h"
#include "platform/media/DRByteSource.h"
#include "platform/media/DRMP4BoxReader.h"
#include "platform/media/DRMP4Removal.h"
#include "platform/media/DRMP4Survey.h"

#include <utility>

std::optional<DRMP4Atom> DRMP4Atom::atomWithAbstractData(const DRAbstractData& data)
{
    DRMemorySource source(data);
    DRMP4Survey survey(source, {}, {});
    if (survey.run() != DRMP4Survey::Outcome::Complete) {
        return std::nullopt;
    }
    return DRMP4Atom(data.bytes(), {.range = {0, source.length()}}, {});
}

DRMP4Atom::DRMP4Atom(QByteArray bytes, const DRMP4Box& box, DRMP4Path path)
    : m_bytes(std::move(bytes)), m_box(box), m_path(std::move(path))
{
}

std::vector<DRMP4Atom> DRMP4Atom::allAtomsWithPath(const QString& path) const
{
    const auto types = mp4PathOf(path);
    if (!types) {
        return {};
    }
    std::vector<DRMP4Atom> atoms = {*this};
    for (const quint32 type : *types) {
        std::vector<DRMP4Atom> deeper;
        for (const DRMP4Atom& atom : atoms) {
            const std::vector<DRMP4Atom> children = atom.childrenOfType(type);
            deeper.insert(deeper.end(), children.begin(), children.end());
        }
        atoms = std::move(deeper);
    }
    return atoms;
}

bool DRMP4Atom::removeSelfFromMutableData(DRMutableAbstractData& data) const
{
    if (m_path.empty()) {
        return false;
    }
    DRMemorySource source(data);
    DRMP4Survey survey(source, {m_path}, {.onlyAt = m_box.range.offset});
    if (survey.run() != DRMP4Survey::Outcome::Complete || survey.findings().removals != std::vector{m_box.range}) {
        return false;
    }
    return DRMP4Removal(survey.takeFindings()).applyTo(data);
}

std::vector<DRMP4Atom> DRMP4Atom::childrenOfType(quint32 type) const
{
    const DRAbstractData data(m_bytes);
    DRMemorySource source(data);
    DRMP4BoxReader reader(source);
    const quint32 parentType = m_path.size() < 2 ? 0 : m_path[m_path.size() - 2];
    const auto children = m_path.empty() ? std::optional(m_box.range) : reader.childrenOf(m_box, parentType);
    std::vector<DRMP4Atom> atoms;
    if (!children) {
        return atoms;
    }
    DRMP4Path path = m_path;
    path.push_back(type);
    reader.forEachBox(*children, [&](const DRMP4Box& box) {
        if (box.type == type) {
            atoms.push_back(DRMP4Atom(m_bytes, box, path));
        }
        return true;
    });
    return atoms;
}
