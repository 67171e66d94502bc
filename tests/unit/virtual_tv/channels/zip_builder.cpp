#include "tests/unit/virtual_tv/channels/zip_builder.h"

#include <memory>
#include <stdexcept>

namespace vxtv::test {

namespace {

struct Close {
    void operator()(archive* writer) const { archive_write_free(writer); }
};

la_ssize_t appendTo(archive* /*writer*/, void* target, const void* bytes, std::size_t size) {
    static_cast<std::string*>(target)->append(static_cast<const char*>(bytes), size);
    return static_cast<la_ssize_t>(size);
}

void expectOk(archive* writer, int status) {
    if (status != ARCHIVE_OK) {
        throw std::runtime_error(archive_error_string(writer));
    }
}

}  // namespace

std::string packedAsTold(const std::vector<ZipMember>& members, const std::string& options) {
    std::string packed;
    const std::unique_ptr<archive, Close> writer(archive_write_new());
    expectOk(writer.get(), archive_write_set_format_zip(writer.get()));
    if (!options.empty()) {
        expectOk(writer.get(), archive_write_set_options(writer.get(), options.c_str()));
        archive_write_set_passphrase(writer.get(), "secret");
    }
    archive_write_set_bytes_per_block(writer.get(), 0);
    expectOk(writer.get(), archive_write_open(writer.get(), &packed, nullptr, appendTo, nullptr));
    for (const ZipMember& member : members) {
        archive_entry* const entry = archive_entry_new();
        archive_entry_set_pathname(entry, member.name.c_str());
        archive_entry_set_filetype(entry, member.type);
        archive_entry_set_perm(entry, static_cast<__LA_MODE_T>(member.mode));
        archive_entry_set_size(entry, static_cast<la_int64_t>(member.content.size()));
        if (!member.link.empty()) {
            archive_entry_set_symlink(entry, member.link.c_str());
        }
        const int status = archive_write_header(writer.get(), entry);
        archive_entry_free(entry);
        expectOk(writer.get(), status);
        archive_write_data(writer.get(), member.content.data(), member.content.size());
    }
    expectOk(writer.get(), archive_write_close(writer.get()));
    return packed;
}

}  // namespace vxtv::test
