#pragma once

#include "data/Engine.h"
#include "runtime/FolderLock.h"

namespace zv::sqlite {

/// Files of a school in the making: built in a folder beside their destination (colegio.db.creando), and
/// moved by hard links. Whoever builds holds a lock on the folder, so that the content of an unlocked one was
/// left behind by a killed process.
class FilesToBe final : public SchoolToBe {
public:
    /// `kept`: where the files that are there go; empty where none may be.
    FilesToBe(std::filesystem::path live, std::filesystem::path kept);
    FilesToBe(const FilesToBe&) = delete;
    FilesToBe& operator=(const FilesToBe&) = delete;
    ~FilesToBe() override;

    String location() const override;
    void putInPlace() override;

private:
    /// RAII lock of the folder.
    class Folder {
    public:
        explicit Folder(const std::filesystem::path& live);
        Folder(const Folder&) = delete;
        Folder& operator=(const Folder&) = delete;
        ~Folder();
        const std::filesystem::path& path() const { return path_; }

    private:
        bool lock();
        std::filesystem::path path_;
        FolderLock lock_;
    };

    std::filesystem::path aside(Database which) const;
    std::filesystem::path place(Database which) const { return fileOf(live_, which); }
    void takeBack() const;
    void clear() const;

    std::filesystem::path live_;
    std::filesystem::path kept_;
    Folder folder_;
    bool placed_ = false;
};

} // namespace zv::sqlite
