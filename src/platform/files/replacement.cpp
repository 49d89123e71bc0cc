#include "replacement.h"

#include "attributes.h"
#include "error.h"

#include <cerrno>

namespace files {

namespace {

constexpr unsigned usualRights = 0666; // less what the process's mask takes away
constexpr unsigned ownerOnly = 0600;

/// For its extended attributes; not open when this process may write the file and not read it.
OpenFile sourceOf(const std::string& path) {
    try {
        return {path, OpenFor::ReadingNoLink};
    } catch (const Error& error) {
        if (error.code() != EACCES) throw;
        return {};
    }
}

} // namespace

Replacement::Replacement(const std::string& path, Target target, Rights rights)
    : m_path(target == Target::File ? behindLinks(path) : path) {
    const std::optional<Status> old = target == Target::File ? statusOf(m_path) : std::nullopt;
    if (old && old->kind == Status::Kind::Folder) throw Error(EISDIR, m_path);
    if (old) requireWritable(m_path, *old);
    if (old && old->kind == Status::Kind::Other) {
        m_direct = OpenFile(m_path, OpenFor::Writing);
        return;
    }
    if (old) m_source = sourceOf(m_path);
    m_model = old;
    if (m_model && rights == Rights::OwnerOnly) m_model->mode = ownerOnly;
    m_sibling.emplace(m_path, m_model || rights == Rights::OwnerOnly ? ownerOnly : usualRights);
}

Replacement::Replacement(const std::string& path, const OpenFile& model)
    : m_path(path), m_model(model.status()), m_source(model.again()) {
    m_sibling.emplace(m_path, ownerOnly);
}

void Replacement::copy(const OpenFile& source) {
    const Status status = source.status();
    if (status.kind == Status::Kind::Plain)
        copy(source, 0, status.size);
    else
        write(contentOf(source));
}

void Replacement::takeRightsNow() {
    if (m_sibling && m_model && !m_hasRights) takeRights(file(), *m_model, m_source);
    m_hasRights = true;
}

void Replacement::finish() {
    if (m_finished) return;
    takeRightsNow();
    if (m_sibling) {
        if (!m_sibling->isReplaced()) file().sync();
    } else {
        m_direct.close();
    }
    m_finished = true;
}

void Replacement::commit(Sibling::Onto onto) {
    finish();
    if (m_sibling) m_sibling->moveTo(m_path, onto);
}

} // namespace files
