#pragma once

#include "data/Engine.h"

namespace zv::sqlite {

/// The files of a school in the making: they stand in a folder beside their place (colegio.db.creando), and
/// get there by a second name. Who makes them locks the folder, so that what is in one that is free was left
/// behind by the dead.
class FilesToBe final : public SchoolToBe {
public:
    explicit FilesToBe(std::filesystem::path live);
    FilesToBe(const FilesToBe&) = delete;
    FilesToBe& operator=(const FilesToBe&) = delete;
    ~FilesToBe() override;

    String location() const override;
    void putInPlace() override;

private:
    /// The folder, and the right to it.
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
        int handle_ = -1;
    };

    std::filesystem::path aside(Database which) const;
    std::filesystem::path place(Database which) const { return fileOf(live_, which); }
    void takeBack() const;
    void clear() const;

    std::filesystem::path live_;
    Folder folder_;
    bool placed_ = false;
};

} // namespace zv::sqlite
